#pragma once

namespace varnoth {

/// Allocators with free index bounds, for code that calls the kernels with arrays of its own: a
/// vector v[nl … nh], a matrix m[nrl … nrh][ncl … nch] of contiguous rows. What an allocator gave
/// goes back by the releaser of the same name and bounds. A failed allocation ends the process by
/// `nrerror`. Our own code uses ARRAY and MATRIX instead.
float* vector(long nl, long nh);
int* ivector(long nl, long nh);
unsigned char* cvector(long nl, long nh);
unsigned long* lvector(long nl, long nh);
double* dvector(long nl, long nh);
float** matrix(long nrl, long nrh, long ncl, long nch);
double** dmatrix(long nrl, long nrh, long ncl, long nch);
int** imatrix(long nrl, long nrh, long ncl, long nch);
/// A view with its own bounds on a part of a matrix.
float** submatrix(float** a, long oldrl, long oldrh, long oldcl, long oldch, long newrl,
                  long newcl);
/// A view as a matrix on a plain row-major block.
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

/// The pair for long double: no padding, and every row of a matrix is a block of its own.
long double* ldvector(long nl, long nh);
long double** ldmatrix(long nrl, long nrh, long ncl, long nch);
void free_ldvector(long double* v, long nl, long nh);
void free_ldmatrix(long double** m, long nrl, long nrh, long ncl, long nch);

}  // namespace varnoth
