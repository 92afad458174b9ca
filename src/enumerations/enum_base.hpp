#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <iterator>
#include <span>
#include <typeinfo>

#include "enumerations/enum_errors.hpp"
#include "foundation/string.hpp"

namespace varnoth {
class PARAMETER_POOL;
class PARAMETER_POOL_READ_WRITE_CHANGE;
}  // namespace varnoth

namespace varnoth::BASIC::TYPES {

/// A further text of a value.
struct ENUM_ALIAS {
  const char* text;
  std::int32_t id;
};

/// All that tells one enumeration from another. The rows are a guard at id 0, the legal values from
/// id 1 on, and a guard behind them.
struct ENUM_TABLE {
  const char* key_word = "";  ///< of pool entries
  const char* guard = "-";    ///< text of the guards
  bool guards_match = false;  ///< whether the lookup by text finds guards
  std::span<const char* const> values;
  std::span<const ENUM_ALIAS> aliases;

  std::int32_t LastId() const { return static_cast<std::int32_t>(values.size()); }
  /// Text of a row. Throws ERROR_ENUM_BASE_INVALID_ID for an id that is no row's.
  const char* At(std::int32_t id) const;
};

/// How the lookup compares the wanted text with its candidates.
struct TEXT_COMPARISON {
  bool case_sensitive = false;
  bool without_separators = false;  ///< blanks, "-" and "_" don't count
};

/// Id of the first row, else of the first alias, whose text is the wanted one. A miss throws
/// ERROR_ENUM_BASE_INVALID_VALUE with the name of the class, as in "SAR::Edge".
std::int32_t FindId(const ENUM_TABLE& table, const std::type_info& type, const STRING& wanted,
                    TEXT_COMPARISON comparison);

/// A value out of the table of its class: a symbolic value of parameter files. Classes of the
/// family are declared through ENUM below. An object without a value has id 1 and the empty text.
/// A failed lookup, step or read leaves the object as it was.
class ENUM_BASE {
 public:
  ENUM_BASE() = default;
  virtual ~ENUM_BASE() = default;

  /// Equality of the ids. Throws ERROR_ENUM_BASE_TYPE_MISMATCH for objects of different classes.
  virtual bool operator==(const ENUM_BASE& other) const;
  virtual bool operator!=(const ENUM_BASE& other) const;

  /// The next and the former row, which may be a guard. A step beyond the guards throws
  /// ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED.
  virtual ENUM_BASE& operator++();
  virtual ENUM_BASE& operator--();
  /// The same, giving the row that the object stood at; of an object of a known class the forms
  /// below give a copy.
  virtual const ENUM_BASE& operator++(int);
  virtual const ENUM_BASE& operator--(int);

  /// The last legal id; 0 for the base, which has no values.
  virtual std::int32_t LastId() const { return Table().LastId(); }
  /// The row of an id or, with `assign`, this object, which then is that row's value. Throws
  /// ERROR_ENUM_BASE_INVALID_ID below the first guard and above the last. The base gives itself.
  virtual const ENUM_BASE& FromId(std::int32_t wanted, bool assign);

  /// Sets the object from the text under the key `prefix` and key word, joined; a null prefix is
  /// empty. Letters' case doesn't matter. Throws what the pool throws, PARAMETER_KEY_TOO_LONG, and
  /// ERROR_ENUM_BASE_INVALID_VALUE, behind a line at ALARM, for a text that is no value.
  virtual void ReadFromPool(PARAMETER_POOL& pool, const char* prefix);
  /// Puts the text under that key, whether the pool has it or not.
  virtual void WriteToPool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, const char* prefix) const;
  /// As ReadFromPool, but takes only the exact text of a legal value; any other throws
  /// INVALID_PARAMETER_VALUE behind a line at ALARM.
  virtual void ReadCheckedFromPool(PARAMETER_POOL& pool, const char* prefix);

  /// The n-th alias, counting from 0, of the value of an object of this class or, where there is
  /// none, the value's text. Throws ERROR_ENUM_BASE_TYPE_MISMATCH for an object of another class.
  virtual STRING GetAlias(const ENUM_BASE& object, int n) const;

  /// Makes the object the value with that text or alias. A text that is none throws
  /// ERROR_ENUM_BASE_INVALID_VALUE.
  void Set(const STRING& wanted, bool case_sensitive = false);
  /// The same, blind to blanks, "-" and "_": "slant range" and "SLANTRANGE" are one.
  void SetTolerant(const STRING& wanted, bool case_sensitive = false);

  STRING text;  ///< copied ahead of the id, which then stands as well where memory runs out
  std::int32_t id = 1;

 protected:
  ENUM_BASE(const ENUM_BASE&) = default;
  ENUM_BASE& operator=(const ENUM_BASE&) = default;

  virtual const ENUM_TABLE& Table() const;
};

/// A class of the family, declared as
///
///     class Edge : public ENUM<Edge> {
///      public:
///       using ENUM::ENUM;
///       static constexpr const char* KEY_WORD = "edge";
///       static constexpr const char* VALUES[] = {"TOP", "RIGHT", "BOTTOM", "LEFT"};
///     };
///
/// and, where wanted, with an array ALIASES of ENUM_ALIAS and with GUARD and GUARDS_MATCH of its
/// own. A class with more fields has constructors of its own and, as a friend, a `CompleteRow`,
/// which finds id and text of a row set and fills the rest.
///
/// The rows are built at their first use.
template <class DERIVED>
class ENUM : public ENUM_BASE {
 public:
  static constexpr const char* GUARD = "-";
  static constexpr bool GUARDS_MATCH = false;
  static constexpr std::array<ENUM_ALIAS, 0> ALIASES{};

  ENUM() = default;
  /// The value of a text; throws like `Set`.
  explicit ENUM(const STRING& wanted, bool case_sensitive = false)
      : ENUM_BASE(RowOf(wanted, case_sensitive)) {
    static_assert(sizeof(DERIVED) == sizeof(ENUM),
                  "fields of its own need constructors of its own");
  }

  /// The row of an id; throws ERROR_ENUM_BASE_INVALID_ID.
  static const DERIVED& Row(std::int32_t wanted) {
    StaticTable().At(wanted);
    return Rows()[static_cast<std::size_t>(wanted)];
  }

  const ENUM_BASE& FromId(std::int32_t wanted, bool assign) override {
    const DERIVED& row = Row(wanted);
    if (!assign) return row;
    return static_cast<DERIVED&>(*this) = row;
  }

 protected:
  static const DERIVED& RowOf(const STRING& wanted, bool case_sensitive) {
    return Row(FindId(StaticTable(), typeid(DERIVED), wanted, {case_sensitive, false}));
  }

  const ENUM_TABLE& Table() const override { return StaticTable(); }

 private:
  void CompleteRow() {}

  static const ENUM_TABLE& StaticTable() {
    static constexpr ENUM_TABLE table{DERIVED::KEY_WORD, DERIVED::GUARD, DERIVED::GUARDS_MATCH,
                                      DERIVED::VALUES, DERIVED::ALIASES};
    return table;
  }

  static const auto& Rows() {
    static const auto rows = [] {
      std::array<DERIVED, std::size(DERIVED::VALUES) + 2> made;
      std::int32_t row_id = 0;
      for (DERIVED& row : made) {
        row.id = row_id;
        row.text = StaticTable().At(row_id);
        row.CompleteRow();
        ++row_id;
      }
      return made;
    }();
    return rows;
  }
};

/// The postfix steps of a known class: they give a copy of the row that the object stood at.
template <std::derived_from<ENUM_BASE> E>
E operator++(E& value, int) {
  const std::int32_t old = value.id;
  ++value;
  return E::Row(old);
}

template <std::derived_from<ENUM_BASE> E>
E operator--(E& value, int) {
  const std::int32_t old = value.id;
  --value;
  return E::Row(old);
}

}  // namespace varnoth::BASIC::TYPES
