#pragma once

namespace varnoth {

/// Allocators with free index bounds, for code that calls the kernels with arrays of its own: a
/// vector v[nl … nh], a matrix m[nrl … nrh][ncl … nch] of contiguous rows. The elements are not
/// initialised. Release each with the releaser of the same name and the same bounds. A failed
/// allocation ends the process by `nrerror`. This library itself uses ARRAY and MATRIX instead.
///
///     double** const a = dmatrix(1, 3, 1, 3);
///     a[3][3] = 1.0;
///     free_dmatrix(a, 1, 3, 1, 3);
float* vector(long nl, long nh);
int* ivector(long nl, long nh);
unsigned char* cvector(long nl, long nh);
unsigned long* lvector(long nl, long nh);
double* dvector(long nl, long nh);
float** matrix(long nrl, long nrh, long ncl, long nch);
double** dmatrix(long nrl, long nrh, long ncl, long nch);
int** imatrix(long nrl, long nrh, long ncl, long nch);
/// A view on a[oldrl … oldrh][oldcl … oldch] whose first element is [newrl][newcl].
float** submatrix(float** a, long oldrl, long oldrh, long oldcl, long oldch, long newrl,
                  long newcl);
/// A view as matrix [nrl … nrh][ncl … nch] on a plain row-major block that starts at `a`.
float** convert_matrix(float* a, long nrl, long nrh, long ncl, long nch);

void free_vector(float* v, long nl, long nh);
void free_ivector(int* v, long nl, long nh);
void free_cvector(unsigned char* v, long nl, long nh);
void free_lvector(unsigned long* v, long nl, long nh);
void free_dvector(double* v, long nl, long nh);
void free_matrix(float** m, long nrl, long nrh, long ncl, long nch);
void free_dmatrix(double** m, long nrl, long nrh, long ncl, long nch);
void free_imatrix(int** m, long nrl, long nrh, long ncl, long nch);
void free_submatrix(float** b, long nrl, long nrh, long ncl, long nch);
void free_convert_matrix(float** b, long nrl, long nrh, long ncl, long nch);

/// The same for long double, but without padding, and with every row of a matrix in its own block.
long double* ldvector(long nl, long nh);
long double** ldmatrix(long nrl, long nrh, long ncl, long nch);
void free_ldvector(long double* v, long nl, long nh);
void free_ldmatrix(long double** m, long nrl, long nrh, long ncl, long nch);

}  // namespace varnoth
