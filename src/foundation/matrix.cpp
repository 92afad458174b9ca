#include "foundation/matrix.hpp"

#include <climits>

#include "foundation/complex.hpp"
#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

template <class T>
MATRIX<T>::MATRIX(const RANGE<int>& row_range, const RANGE<int>& column_range) {
  NeedRanges(row_range, column_range);
}

template <class T>
MATRIX<T>::MATRIX(const MATRIX& other)
    : columns(other.columns), rows(other.rows), block(other.block) {}

template <class T>
MATRIX<T>& MATRIX<T>::operator=(const MATRIX& other) {
  if (this == &other) return *this;
  NeedRanges(other.rows, other.columns);
  block = other.block;
  return *this;
}

template <class T>
void MATRIX<T>::Reset() {
  columns = RANGE<int>();
  rows = RANGE<int>();
  block.Reset();
}

template <class T>
bool MATRIX<T>::Create(const RANGE<int>& row_range, const RANGE<int>& column_range) {
  Delete();
  if (row_range.Count() < 0 || column_range.Count() < 0) return false;
  const long long count = static_cast<long long>(row_range.Count()) * column_range.Count();
  if (count > INT_MAX || block.Create(RANGE<int>(0, static_cast<int>(count))) != ARRAY_OK) {
    return false;
  }
  rows = row_range;
  columns = column_range;
  return true;
}

template <class T>
void MATRIX<T>::NeedRanges(const RANGE<int>& row_range, const RANGE<int>& column_range) {
  if (row_range == rows && column_range == columns) return;
  if (!Create(row_range, column_range)) throw ERROR_NO_MEMORY();
}

template <class T>
void MATRIX<T>::Delete() {
  block.Delete();
  row_tables.Delete();
  MATRIX::Reset();
}

template <class T>
std::shared_ptr<T* []> MATRIX<T>::MakePointers(int count) {
  try {
    return std::make_unique<T*[]>(static_cast<std::size_t>(count));
  } catch (const std::bad_alloc&) {
    throw ERROR_NO_MEMORY();
  }
}

template <class T>
T* const* MATRIX<T>::RowPointers(int first_column) const {
  T* const first = block.GetElementBase(0);
  if (first == nullptr) return nullptr;
  const int links = row_tables.GetLength();
  for (int i = 0; i < links; ++i) {
    const POINTER_VECTOR_LINK_T& link = row_tables.begin()[i];
    if (link.first_column == first_column) return link.row_pointers.get() - rows.First();
  }
  const POINTER_VECTOR_LINK_T link{first_column, MakePointers(rows.Count())};
  for (int r = 0; r < rows.Count(); ++r) {
    link.row_pointers[r] = first + static_cast<std::ptrdiff_t>(r) * columns.Count() - first_column;
  }
  row_tables.NeedRange(RANGE<int>(0, links + 1));
  row_tables.begin()[links] = link;
  return link.row_pointers.get() - rows.First();
}

template class MATRIX<unsigned char>;
template class MATRIX<char>;
template class MATRIX<short>;
template class MATRIX<int>;
template class MATRIX<float>;
template class MATRIX<double>;
template class MATRIX<long double>;
template class MATRIX<COMPLEX<float>>;
template class MATRIX<COMPLEX<double>>;
template class MATRIX<STRING>;

void Print(const MATRIX<int>& matrix, int level, const char* title, int limit) {
  const RANGE<int>& rows = matrix.GetRowRange();
  const RANGE<int>& columns = matrix.GetColumnRange();
  const int shown_rows = std::min(rows.Count(), limit);
  const int shown_columns = std::min(columns.Count(), limit);
  const char* const line_end = shown_columns < columns.Count() ? " .. |\n" : " |\n";
  const auto line = [&](const char* head, const auto& cell) {
    GlobalLog.set(level) << head;
    for (int c = 0; c < shown_columns; ++c) cell(c);
    GlobalLog << line_end;
  };

  GlobalLog.set(level) << title << ": Matrix{ " << rows.Count() << " x " << columns.Count()
                       << " }\n";
  const int* const first = matrix.GetBlock();
  for (int r = 0; r < shown_rows; ++r) {
    line(" | ", [&](int c) {
      char text[16];
      std::snprintf(text, sizeof text, "%5d ", first[static_cast<long>(r) * columns.Count() + c]);
      GlobalLog << text;
    });
  }
  if (shown_rows < rows.Count()) {
    line("", [](int) { GlobalLog << "   :    "; });
  }
}

}  // namespace varnoth
