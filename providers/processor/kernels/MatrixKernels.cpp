#include "providers/processor/kernels/MatrixKernels.h"

#include <Eigen/Core>
#include <Eigen/SVD>
#include <cstring>

#include "providers/common/SplitMix.h"

#ifdef DIAGS_MODULE
#include "providers/processor/kernels/Module.h"
#define DIAGS_EIGEN "Eigen, AVX2"
#else
#include "providers/processor/kernels/Kernels.h"
#define DIAGS_EIGEN "Eigen"
#endif

// Products and singular values of matrices, as programs calculate them.

namespace providers {

namespace {

template <class Number>
void productBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  using Matrix = Eigen::Matrix<Number, Eigen::Dynamic, Eigen::Dynamic>;
  const auto* numbers = reinterpret_cast<const Number*>(operands);
  const auto size = static_cast<Eigen::Index>(kMatrixSize);
  const Eigen::Map<const Matrix> left(numbers, size, size);
  const Eigen::Map<const Matrix> right(numbers + kMatrixWords, size, size);
  Eigen::Map<Matrix> product(reinterpret_cast<Number*>(results), size, size);
  product.noalias() = left * right;
  // An exact zero has no sign that counts.
  product.array() += Number{0};
}

constexpr int kSize = static_cast<int>(kSvdSize);
using Square = Eigen::Matrix<double, kSize, kSize>;
using Column = Eigen::Matrix<double, kSize, 1>;

/// A mirror: its own inverse.
Square reflection(const std::uint64_t* words) {
  const Eigen::Map<const Column> normal(reinterpret_cast<const double*>(words));
  return Square::Identity() - 2 / normal.squaredNorm() * (normal * normal.transpose());
}

std::uint64_t digest(const Square& matrix) {
  std::uint64_t sum = 0;
  for (int i = 0; i < kSize * kSize; ++i) {
    std::uint64_t word;
    std::memcpy(&word, matrix.data() + i, sizeof word);
    sum = splitMix(sum ^ word, 0);
  }
  return sum;
}

/// Of a matrix whose singular values are known: the numbers from its size down to 1. The results
/// are those found, what the vectors are, and whether all of that is near enough.
void svdBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  constexpr double kNear = 1e-9;
  const Column values = Column::LinSpaced(kSize, kSize, 1);
  const Square matrix = reflection(operands) * reflection(operands + kSvdSize) *
                        values.asDiagonal() * reflection(operands + 2 * kSvdSize) *
                        reflection(operands + 3 * kSvdSize);
  const Eigen::JacobiSVD<Square> svd(matrix, Eigen::ComputeFullU | Eigen::ComputeFullV);
  const Square again =
      svd.matrixU() * svd.singularValues().asDiagonal() * svd.matrixV().transpose();
  std::memcpy(results, svd.singularValues().data(), kSvdSize * sizeof *results);
  results[kSvdSize] = digest(svd.matrixU());
  results[kSvdSize + 1] = digest(svd.matrixV());
  results[kSvdSize + 2] = (svd.singularValues() - values).cwiseAbs().maxCoeff() < kNear &&
                          (again - matrix).cwiseAbs().maxCoeff() < kNear;
}

const Operation kMatrixKernels[] = {
    {"Matrix product of 64 bits (" DIAGS_EIGEN ")", Unit::Kernel, 2 * kMatrixWords, kMatrixWords, 1,
     shapeMatrices64, productBlock<double>, productAnswer64},
    {"Matrix product of 32 bits (" DIAGS_EIGEN ")", Unit::Kernel, kMatrixWords, kMatrixWords / 2, 1,
     shapeMatrices32, productBlock<float>, productAnswer32},
    {"Singular values (" DIAGS_EIGEN ")", Unit::Kernel, kSvdOperands, kSvdResults, 1, shapeVectors,
     svdBlock, nullptr}};

}  // namespace

#ifndef DIAGS_MODULE

void addMatrixKernels(Operations& operations) {
  operations.insert(operations.end(), std::begin(kMatrixKernels), std::end(kMatrixKernels));
}

#endif

}  // namespace providers

#ifdef DIAGS_MODULE

extern "C" __attribute__((visibility("default"))) const providers::Operation*
DIAGS_KERNELS_FUNCTION(std::size_t* count) {
  *count = std::size(providers::kMatrixKernels);
  return providers::kMatrixKernels;
}

#endif
