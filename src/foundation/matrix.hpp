#pragma once

#include <memory>

#include "foundation/array.hpp"

namespace varnoth {

/// A matrix with free first row and column indices, one row-major block. Copies are deep.
///
/// An element access costs two plain indexing steps: `Rows()[r][c]` with the matrix's own indices.
/// `Rows(first_column)` gives a view with another column base; the table of row pointers of each
/// base that was asked for is kept.
template <class T>
class MATRIX {
 public:
  MATRIX() = default;
  /// Throws ERROR_NO_MEMORY if the matrix can not be made.
  MATRIX(const RANGE<int>& row_range, const RANGE<int>& column_range);
  MATRIX(const MATRIX& other);
  MATRIX& operator=(const MATRIX& other);
  virtual ~MATRIX() = default;
  /// Forgets ranges and block without freeing them.
  virtual void Reset();

  /// Releases the former content and takes memory for rows × columns elements. False for a negative
  /// count or where the memory is not to be had; the matrix is then empty.
  bool Create(const RANGE<int>& row_range, const RANGE<int>& column_range);
  /// The same, and no work at all for the ranges that it has. Throws ERROR_NO_MEMORY for false.
  void NeedRanges(const RANGE<int>& row_range, const RANGE<int>& column_range);
  /// Releases everything.
  void Delete();

  const RANGE<int>& GetRowRange() const { return rows; }
  const RANGE<int>& GetColumnRange() const { return columns; }
  /// First element of the block; null for a matrix of no rows or no columns.
  T* GetBlock() { return block.begin(); }
  const T* GetBlock() const { return block.begin(); }
  /// The elements row by row.
  T* begin() { return block.begin(); }
  T* end() { return block.end(); }
  const T* begin() const { return block.begin(); }
  const T* end() const { return block.end(); }
  std::size_t size() const { return block.size(); }
  /// Row pointers p such that p[r][c] is the element of row r and column c; null for a matrix of no
  /// rows or no columns. Throws ERROR_NO_MEMORY.
  T* const* Rows() { return RowPointers(columns.First()); }
  const T* const* Rows() const { return RowPointers(columns.First()); }
  /// The same with columns counted from `first_column`.
  T* const* Rows(int first_column) { return RowPointers(first_column); }
  const T* const* Rows(int first_column) const { return RowPointers(first_column); }

 private:
  /// A pointer per row, each shifted by one column base.
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

/// Logs the upper left part of the matrix, at most `limit` rows and columns of it.
void Print(const MATRIX<int>& matrix, int level, const char* title, int limit);

}  // namespace varnoth
