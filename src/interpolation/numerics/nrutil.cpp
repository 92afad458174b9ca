#include "interpolation/numerics/nrutil.hpp"

#include <cstddef>
#include <cstdlib>

#include "interpolation/numerics/nrerror.hpp"

namespace varnoth {

namespace {

constexpr long PADDING = 1;

/// A malloc block of `padding` and `count` elements, indexed from `first` after the padding.
template <class T>
T* Block(long count, long first, long padding, const char* failure) {
  auto* const block =
      static_cast<T*>(std::malloc(static_cast<std::size_t>(count + padding) * sizeof(T)));
  if (block == nullptr) nrerror(failure);
  return block - first + padding;
}

template <class T>
void Release(T* base, long first, long padding) {
  std::free(base + first - padding);
}

template <class T>
T** Matrix(long nrl, long nrh, long ncl, long nch, const char* rows_failure,
           const char* block_failure) {
  const long rows = nrh - nrl + 1;
  const long columns = nch - ncl + 1;
  T** const m = Block<T*>(rows, nrl, PADDING, rows_failure);
  m[nrl] = Block<T>(rows * columns, ncl, PADDING, block_failure);
  for (long i = nrl + 1; i <= nrh; ++i) m[i] = m[i - 1] + columns;
  return m;
}

template <class T>
void ReleaseMatrix(T** m, long nrl, long ncl) {
  Release(m[nrl], ncl, PADDING);
  Release(m, nrl, PADDING);
}

}  // namespace

float* vector(long nl, long nh) {
  return Block<float>(nh - nl + 1, nl, PADDING, "allocation failure in vector()");
}
int* ivector(long nl, long nh) {
  return Block<int>(nh - nl + 1, nl, PADDING, "allocation failure in ivector()");
}
unsigned char* cvector(long nl, long nh) {
  return Block<unsigned char>(nh - nl + 1, nl, PADDING, "allocation failure in cvector()");
}
unsigned long* lvector(long nl, long nh) {
  return Block<unsigned long>(nh - nl + 1, nl, PADDING, "allocation failure in lvector()");
}
double* dvector(long nl, long nh) {
  return Block<double>(nh - nl + 1, nl, PADDING, "allocation failure in dvector()");
}

float** matrix(long nrl, long nrh, long ncl, long nch) {
  return Matrix<float>(nrl, nrh, ncl, nch, "allocation failure 1 in matrix()",
                       "allocation failure 2 in matrix()");
}
double** dmatrix(long nrl, long nrh, long ncl, long nch) {
  return Matrix<double>(nrl, nrh, ncl, nch, "allocation failure 1 in matrix()",
                        "allocation failure 2 in matrix()");
}
int** imatrix(long nrl, long nrh, long ncl, long nch) {
  return Matrix<int>(nrl, nrh, ncl, nch, "allocation failure 1 in matrix()",
                     "allocation failure 2 in matrix()");
}

float** submatrix(float** a, long oldrl, long oldrh, long oldcl, long /*oldch*/, long newrl,
                  long newcl) {
  auto** const m =
      Block<float*>(oldrh - oldrl + 1, newrl, PADDING, "allocation failure in submatrix()");
  for (long i = oldrl, j = newrl; i <= oldrh; ++i, ++j) m[j] = a[i] + oldcl - newcl;
  return m;
}

float** convert_matrix(float* a, long nrl, long nrh, long ncl, long nch) {
  const long columns = nch - ncl + 1;
  auto** const m =
      Block<float*>(nrh - nrl + 1, nrl, PADDING, "allocation failure in convert_matrix()");
  for (long i = nrl; i <= nrh; ++i) m[i] = a - ncl + (i - nrl) * columns;
  return m;
}

void free_vector(float* v, long nl, long /*nh*/) { Release(v, nl, PADDING); }
void free_ivector(int* v, long nl, long /*nh*/) { Release(v, nl, PADDING); }
void free_cvector(unsigned char* v, long nl, long /*nh*/) { Release(v, nl, PADDING); }
void free_lvector(unsigned long* v, long nl, long /*nh*/) { Release(v, nl, PADDING); }
void free_dvector(double* v, long nl, long /*nh*/) { Release(v, nl, PADDING); }
void free_matrix(float** m, long nrl, long /*nrh*/, long ncl, long /*nch*/) {
  ReleaseMatrix(m, nrl, ncl);
}
void free_dmatrix(double** m, long nrl, long /*nrh*/, long ncl, long /*nch*/) {
  ReleaseMatrix(m, nrl, ncl);
}
void free_imatrix(int** m, long nrl, long /*nrh*/, long ncl, long /*nch*/) {
  ReleaseMatrix(m, nrl, ncl);
}
void free_submatrix(float** b, long nrl, long /*nrh*/, long /*ncl*/, long /*nch*/) {
  Release(b, nrl, PADDING);
}
void free_convert_matrix(float** b, long nrl, long /*nrh*/, long /*ncl*/, long /*nch*/) {
  Release(b, nrl, PADDING);
}

long double* ldvector(long nl, long nh) {
  return Block<long double>(nh - nl + 1, nl, 0, "allocation failure in dvector()");
}

long double** ldmatrix(long nrl, long nrh, long ncl, long nch) {
  auto** const m = Block<long double*>(nrh - nrl + 1, nrl, 0, "allocation failure 1 in dmatrix()");
  for (long i = nrl; i <= nrh; ++i) {
    m[i] = Block<long double>(nch - ncl + 1, ncl, 0, "allocation failure 2 in dmatrix()");
  }
  return m;
}

void free_ldvector(long double* v, long nl, long /*nh*/) { Release(v, nl, 0); }

void free_ldmatrix(long double** m, long nrl, long nrh, long ncl, long /*nch*/) {
  for (long i = nrh; i >= nrl; --i) Release(m[i], ncl, 0);
  Release(m, nrl, 0);
}

}  // namespace varnoth
