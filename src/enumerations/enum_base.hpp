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

/// All that differs between enumerations. The rows are a guard at id 0, the legal values from id 1
/// to LastId(), and a guard at LastId() + 1.
struct ENUM_TABLE {
  const char* key_word = "";  ///< of pool entries
  const char* guard = "-";    ///< text of the guards
  bool guards_match = false;  ///< whether a lookup that counts separators finds guards
  std::span<const char* const> values;
  std::span<const ENUM_ALIAS> aliases;

  std::int32_t LastId() const { return static_cast<std::int32_t>(values.size()); }
  /// Text of a row. Throws ERROR_ENUM_BASE_INVALID_ID for an id below 0 or above LastId() + 1.
  const char* At(std::int32_t id) const;
};

/// How the lookup compares the wanted text with its candidates.
struct TEXT_COMPARISON {
  bool case_sensitive = false;
  bool without_separators = false;  ///< ignores blanks, "-" and "_"
};

/// Id of the first row with the wanted text, or else of the first alias with it. Throws
/// ERROR_ENUM_BASE_INVALID_VALUE, with the class's name as in "SAR::Edge", if there is none.
std::int32_t FindId(const ENUM_TABLE& table, const std::type_info& type, const STRING& wanted,
                    TEXT_COMPARISON comparison);

/// A symbolic value of parameter files, from the table of its class.
///
///     SAR::Edge edge("top");             // in any case
///     ++edge;                            // RIGHT
///     edge.ReadFromPool(pool, "image");  // key "image_edge"
///     if (edge.id == SAR::Edge::LEFT) edge.Set("BOTTOM");
///
/// Declare a class of the family through ENUM below. A default object has id 1 and the empty text.
/// A failed lookup, step or read leaves the object as it was; it writes no log line, except where
/// an operation says so.
class ENUM_BASE {
 public:
  ENUM_BASE() = default;
  virtual ~ENUM_BASE() = default;

  /// Whether the ids are equal. Throws ERROR_ENUM_BASE_TYPE_MISMATCH for objects of different
  /// classes.
  virtual bool operator==(const ENUM_BASE& other) const;
  virtual bool operator!=(const ENUM_BASE& other) const;

  /// Steps to the next or the previous row, which may be a guard. A step beyond the guards throws
  /// ERROR_ENUM_BASE_LIMIT_OF_ENUMERATION_EXPIRED.
  virtual ENUM_BASE& operator++();
  virtual ENUM_BASE& operator--();
  /// The same, but return the row before the step. For an object of a known class the operators at
  /// the end of this file give a copy.
  virtual const ENUM_BASE& operator++(int);
  virtual const ENUM_BASE& operator--(int);

  /// The last legal id; 0 for the base, which has no values.
  virtual std::int32_t LastId() const { return Table().LastId(); }
  /// Returns the row of an id or, with `assign`, this object, which then has taken the row's value.
  /// Throws ERROR_ENUM_BASE_INVALID_ID for an id below 0 or above LastId() + 1. The base class
  /// returns this object unchanged.
  virtual const ENUM_BASE& FromId(std::int32_t wanted, bool assign);

  /// Sets the object from the STR under the key `prefix` and key word, joined by "_"; with a null
  /// or empty prefix the key is the key word alone. Takes texts and aliases in any case. Throws
  /// what the pool throws, PARAMETER_KEY_TOO_LONG, and ERROR_ENUM_BASE_INVALID_VALUE, after a line
  /// at ALARM, for any other text.
  virtual void ReadFromPool(PARAMETER_POOL& pool, const char* prefix);
  /// Writes the text under that key, whether the pool has it or not. Throws like
  /// PARAMETER_POOL_READ_WRITE_CHANGE::Change.
  virtual void WriteToPool(PARAMETER_POOL_READ_WRITE_CHANGE& pool, const char* prefix) const;
  /// Like ReadFromPool, but takes only the exact text of a legal value; any other text throws
  /// INVALID_PARAMETER_VALUE after a line at ALARM.
  virtual void ReadCheckedFromPool(PARAMETER_POOL& pool, const char* prefix);

  /// The n-th alias, counted from 0, of the value of `object`; the value's text if there is none.
  /// Throws ERROR_ENUM_BASE_TYPE_MISMATCH if `object` is of another class.
  virtual STRING GetAlias(const ENUM_BASE& object, int n) const;

  /// Gives the object the value with that text or alias. Any other text throws
  /// ERROR_ENUM_BASE_INVALID_VALUE.
  void Set(const STRING& wanted, bool case_sensitive = false);
  /// The same, but ignores blanks, "-" and "_": "slant-range" and "SLANT RANGE" are the same.
  void SetTolerant(const STRING& wanted, bool case_sensitive = false);

  STRING text;  ///< assigned before the id, so that a failed allocation leaves both as they were
  std::int32_t id = 1;

 protected:
  ENUM_BASE(const ENUM_BASE&) = default;
  ENUM_BASE& operator=(const ENUM_BASE&) = default;

  virtual const ENUM_TABLE& Table() const;
};

/// The base of each class of the family. Declare such a class as
///
///     class Edge : public ENUM<Edge> {
///      public:
///       using ENUM::ENUM;
///       static constexpr const char* KEY_WORD = "edge";
///       static constexpr const char* VALUES[] = {"TOP", "RIGHT", "BOTTOM", "LEFT"};
///     };
///
/// The class may also declare an array ALIASES of ENUM_ALIAS, GUARD and GUARDS_MATCH. A class with
/// further fields declares its own constructors, `friend ENUM;` and a private `CompleteRow`, which
/// fills the further fields of a row whose id and text are set.
///
/// The first use builds the rows, which stay for the whole process.
template <class DERIVED>
class ENUM : public ENUM_BASE {
 public:
  static constexpr const char* GUARD = "-";
  static constexpr bool GUARDS_MATCH = false;
  static constexpr std::array<ENUM_ALIAS, 0> ALIASES{};

  ENUM() = default;
  /// The value with a text or alias; throws like `Set`.
  explicit ENUM(const STRING& wanted, bool case_sensitive = false)
      : ENUM_BASE(RowOf(wanted, case_sensitive)) {
    static_assert(sizeof(DERIVED) == sizeof(ENUM),
                  "fields of its own need constructors of its own");
  }

  /// The row of an id, 0 to LastId() + 1. Throws ERROR_ENUM_BASE_INVALID_ID for any other.
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

/// The postfix steps of an object of a known class; they give a copy of the row before the step.
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
