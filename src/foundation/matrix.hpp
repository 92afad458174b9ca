#pragma once

#include <memory>

#include "foundation/array.hpp"

namespace varnoth {

/// A matrix with free first row and column indices, in one row-major block. Copies are deep.
///
///     MATRIX<double> covariance(RANGE<int>(1, 3), RANGE<int>(1, 3));
///     std::fill(covariance.begin(), covariance.end(), 0.0);
///     double* const* rows = covariance.Rows();
///     rows[1][3] = 0.5;  // row 1, column 3
///
/// An element access costs two plain indexing steps: `Rows()[r][c]` with the matrix's own indices.
/// `Rows(first_column)` gives a view with another column base. The matrix keeps a table of row
/// pointers for each base; the first call with a base builds the table, on a const matrix too, so
/// threads must not share that first call.
template <class T>
class MATRIX {
 public:
  MATRIX() = default;
  /// Elements of plain types are undefined. Throws ERROR_NO_MEMORY if `Create` returns false.
  MATRIX(const RANGE<int>& row_range, const RANGE<int>& column_range);
  /// If memory runs out, copying throws the text "ARRAY : can not copy array", and assignment
  /// throws ERROR_NO_MEMORY.
  MATRIX(const MATRIX& other);
  MATRIX& operator=(const MATRIX& other);
  virtual ~MATRIX() = default;
  /// Forgets ranges and block without freeing the block.
  virtual void Reset();

  /// Releases the former content and allocates rows × columns elements. False for a negative count,
  /// for more elements than an int counts, and if memory runs out; the matrix is then empty.
  bool Create(const RANGE<int>& row_range, const RANGE<int>& column_range);
  /// The same, but does nothing if the matrix has these ranges already. Throws ERROR_NO_MEMORY
  /// where `Create` returns false.
  void NeedRanges(const RANGE<int>& row_range, const RANGE<int>& column_range);
  /// Releases everything.
  void Delete();

  const RANGE<int>& GetRowRange() const { return rows; }
  const RANGE<int>& GetColumnRange() const { return columns; }
  /// First element of the block; null without rows or columns.
  T* GetBlock() { return block.begin(); }
  const T* GetBlock() const { return block.begin(); }
  /// The elements row by row.
  T* begin() { return block.begin(); }
  T* end() { return block.end(); }
  const T* begin() const { return block.begin(); }
  const T* end() const { return block.end(); }
  std::size_t size() const { return block.size(); }
  /// Row pointers p such that p[r][c] is the element of row r and column c; null without rows or
  /// columns. Throws ERROR_NO_MEMORY.
  T* const* Rows() { return RowPointers(columns.First()); }
  const T* const* Rows() const { return RowPointers(columns.First()); }
  /// The same with columns counted from `first_column`.
  T* const* Rows(int first_column) { return RowPointers(first_column); }
  const T* const* Rows(int first_column) const { return RowPointers(first_column); }

 private:
  /// One pointer per row, shifted by the column base.
  struct POINTER_VECTOR_LINK_T {
    int first_column = 0;
    std::shared_ptr<T*[]> row_pointers;  ///< shared only while the link array grows
  };

  static std::shared_ptr<T*[]> MakePointers(int count);
  T* const* RowPointers(int first_column) const;

  RANGE<int> columns;
  RANGE<int> rows;
  ARRAY<T> block;
  mutable ARRAY<POINTER_VECTOR_LINK_T> row_tables;
};

/// Logs the title, the size and the upper left part of the matrix, at most `limit` rows and
/// columns, at a log level.
void Print(const MATRIX<int>& matrix, int level, const char* title, int limit);

}  // namespace varnoth
