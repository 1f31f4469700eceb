// The seeded data of the kriging benchmarks: points uniform in [0,1]^16 and
// a smooth response of the first four coordinates plus a small trend in the
// rest and Gaussian noise, so that a Gaussian variogram fits it well and the
// fitted model is a realistic one.
#ifndef VARIMO_BENCH_KRIGE_BENCH_DATA_H_
#define VARIMO_BENCH_KRIGE_BENCH_DATA_H_

#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

namespace VarimoBench {

constexpr std::size_t kKrigeDim = 16;

struct KrigeData {
  std::vector<std::vector<double>> points;
  std::vector<double> responses;
  std::vector<std::vector<double>> queries;
};

inline double KrigeResponse(const std::vector<double>& x, double noise) {
  double tail = 0.0;
  for (std::size_t k = 4; k < kKrigeDim; ++k) tail += x[k];
  const double pi = std::numbers::pi;
  return 5.0 + std::sin(2.0 * pi * x[0]) + 2.0 * x[1] * x[1] + std::cos(pi * x[2] * x[3]) +
         tail / static_cast<double>(kKrigeDim - 4) + 0.1 * noise;
}

// The same seed for every size, so that the first n points of a larger set
// are the n points of a smaller one.
inline KrigeData GenerateKrigeData(std::size_t numPoints, std::size_t numQueries) {
  KrigeData data;
  std::mt19937_64 engine(20240611);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  std::normal_distribution<double> normal(0.0, 1.0);
  auto point = [&] {
    std::vector<double> x(kKrigeDim);
    for (double& v : x) v = uniform(engine);
    return x;
  };
  for (std::size_t i = 0; i < numPoints; ++i) {
    data.points.push_back(point());
    data.responses.push_back(KrigeResponse(data.points.back(), normal(engine)));
  }
  for (std::size_t q = 0; q < numQueries; ++q) data.queries.push_back(point());
  return data;
}

}  // namespace VarimoBench

#endif  // VARIMO_BENCH_KRIGE_BENCH_DATA_H_
