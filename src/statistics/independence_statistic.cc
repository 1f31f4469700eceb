// The independence statistics on distance matrices, their factory and the
// permutation test.
#include "varimo/statistics/independence_statistic.h"

#include <algorithm>
#include <sstream>

#include "statistic_support.h"
#include "varimo/platform/numarc/shuffle.h"
#include "varimo/statistics/distance_matrix.h"
#include "varimo/statistics/quantile.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

using namespace StatisticDetail;
namespace Failure = ZqStatModelFailureType;

const char* const ZqTwoSampleIndependenceStatisticType::TypeName[NumTypes] = {
    "Null Statistic: Always returns a bad double", "DistanceMatrixCorrelationMeasure",
    "DistanceMatrixCorrelationTestStatistic"};

namespace {

std::uint64_t NumRows(const std::vector<double>& data, std::uint64_t numCols) {
  return numCols == 0 ? 0 : data.size() / numCols;
}

// Both centred distance matrices, after the checks every independence
// statistic makes; on failure `routine` is on the chain.
bool GetCentredDistanceMatrices(ZqStatModelResult& result, Eigen::MatrixXd& a, Eigen::MatrixXd& b,
                                const std::string& routine, const std::vector<double>& data1, std::uint64_t numCols1,
                                bool isSimilarity1, const std::vector<double>& data2, std::uint64_t numCols2,
                                bool isSimilarity2) {
  if (numCols1 != 0 && numCols2 != 0) {
    const std::uint64_t rows1 = NumRows(data1, numCols1), rows2 = NumRows(data2, numCols2);
    if (rows1 != rows2) {
      result = ZqMakeFailedResult(Failure::MismatchBetweenInputVecSizes, routine);
      return false;
    }
    if (rows1 == 0) {
      result = ZqMakeFailedResult(Failure::NoData, routine);
      return false;
    }
  }
  GetDistanceMatrix(result, a, data1, numCols1, isSimilarity1);
  if (result.IsSuccessful()) GetDistanceMatrix(result, b, data2, numCols2, isSimilarity2);
  if (result.NotSuccessful()) {
    result.AddCallContext(routine);
    return false;
  }
  CenterDistanceMatrix(a);
  CenterDistanceMatrix(b);
  return true;
}

std::vector<std::size_t> Identity(Eigen::Index n) {
  std::vector<std::size_t> identity(static_cast<std::size_t>(n));
  for (std::size_t i = 0; i < identity.size(); ++i) identity[i] = i;
  return identity;
}

// The value `statistic` gives the two centred matrices; the bad double
// when they cannot be built.
template <class Statistic>
double ValueOfCentredMatrices(ZqStatModelResult& result, const std::string& routine, const std::vector<double>& data1,
                              std::uint64_t numCols1, bool isSimilarity1, const std::vector<double>& data2,
                              std::uint64_t numCols2, bool isSimilarity2, Statistic statistic) {
  Eigen::MatrixXd a, b;
  if (!GetCentredDistanceMatrices(result, a, b, routine, data1, numCols1, isSimilarity1, data2, numCols2,
                                  isSimilarity2)) {
    return kBad;
  }
  return statistic(a, b);
}

}  // namespace

ZqStatModelResult ZqNullIndependenceStatistic::SimulateStatisticUnderIndependence(
    std::vector<double>& simulated, Numarc::ZqRanNumEngine&, std::uint64_t, const std::vector<double>&, std::uint64_t,
    bool, const std::vector<double>&, std::uint64_t, bool) const {
  simulated.clear();
  return ZqMakeFailedResult(Failure::EmptyStatModel, "ZqNullIndependenceStatistic::SimulateStatisticUnderIndependence");
}

double ZqNullIndependenceStatistic::operator()(ZqStatModelResult& result, const std::vector<double>&, std::uint64_t,
                                               bool, const std::vector<double>&, std::uint64_t, bool) const {
  result = ZqMakeFailedResult(Failure::EmptyStatModel, "ZqNullIndependenceStatistic::operator");
  return kBad;
}

ZqStatModelResult ZqDistanceCorrelationMeasure::SimulateStatisticUnderIndependence(
    std::vector<double>& simulated, Numarc::ZqRanNumEngine&, std::uint64_t, const std::vector<double>&, std::uint64_t,
    bool, const std::vector<double>&, std::uint64_t, bool) const {
  simulated.clear();
  return ZqMakeFailedResult(Failure::NotYetImplemented,
                            "ZqDistanceCorrelationMeasure::SimulateStatisticUnderIndependence");
}

double ZqDistanceCorrelationMeasure::operator()(ZqStatModelResult& result, const std::vector<double>& data1,
                                                std::uint64_t numCols1, bool isSimilarity1,
                                                const std::vector<double>& data2, std::uint64_t numCols2,
                                                bool isSimilarity2) const {
  return ValueOfCentredMatrices(
      result, "ZqDistanceCorrelationMeasure::operator", data1, numCols1, isSimilarity1, data2, numCols2,
      isSimilarity2, [](const Eigen::MatrixXd& a, const Eigen::MatrixXd& b) { return DistanceMatrixCorrelation(a, b).first; });
}

ZqStatModelResult ZqDistanceCorrelationTestStat::SimulateStatisticUnderIndependence(
    std::vector<double>& simulated, Numarc::ZqRanNumEngine& engine, std::uint64_t numSimulations,
    const std::vector<double>& data1, std::uint64_t numCols1, bool isSimilarity1, const std::vector<double>& data2,
    std::uint64_t numCols2, bool isSimilarity2) const {
  simulated.clear();
  ZqStatModelResult result(true);
  Eigen::MatrixXd a, b;
  if (!GetCentredDistanceMatrices(result, a, b, "ZqDistanceCorrelationTestStat::SimulateStatisticUnderIndependence",
                                  data1, numCols1, isSimilarity1, data2, numCols2, isSimilarity2)) {
    return result;
  }
  simulated.reserve(ReserveFor(numSimulations));
  std::vector<std::size_t> shuffle;
  for (std::uint64_t s = 0; s < numSimulations; ++s) {
    Numarc::ZqRandomShuffleOfIndices(shuffle, static_cast<std::size_t>(a.rows()), engine);
    simulated.push_back(DistanceMatrixCovariance(a, b, shuffle));
  }
  return result;
}

double ZqDistanceCorrelationTestStat::operator()(ZqStatModelResult& result, const std::vector<double>& data1,
                                                 std::uint64_t numCols1, bool isSimilarity1,
                                                 const std::vector<double>& data2, std::uint64_t numCols2,
                                                 bool isSimilarity2) const {
  return ValueOfCentredMatrices(result, "ZqDistanceCorrelationTestStat::operator", data1, numCols1, isSimilarity1,
                                data2, numCols2, isSimilarity2, [](const Eigen::MatrixXd& a, const Eigen::MatrixXd& b) {
                                  return DistanceMatrixCovariance(a, b, Identity(a.rows()));
                                });
}

std::unique_ptr<ZqTwoSampleIndependenceStatisticBase> ZqGetTwoSampleIndependenceStatistic(unsigned int type) {
  switch (type) {
    case ZqTwoSampleIndependenceStatisticType::DistanceCorrelationMeasure:
      return std::make_unique<ZqDistanceCorrelationMeasure>();
    case ZqTwoSampleIndependenceStatisticType::DistanceCorrelationTestStat:
      return std::make_unique<ZqDistanceCorrelationTestStat>();
    default:
      return std::make_unique<ZqNullIndependenceStatistic>();
  }
}

double ZqGetTwoSampleIndepStatForVectors(ZqStatModelResult& result, unsigned int statType,
                                         const std::vector<double>& data1, std::uint64_t numCols1, bool isSimilarity1,
                                         const std::vector<double>& data2, std::uint64_t numCols2, bool isSimilarity2) {
  const double value =
      ZqTwoSampleIndependenceStatistic(statType)(result, data1, numCols1, isSimilarity1, data2, numCols2, isSimilarity2);
  if (result.NotSuccessful()) {
    result.AddCallContext("ZqGetTwoSampleIndepStatForVectors");
    return kBad;
  }
  return value;
}

double ZqGetPValueForTwoSampleIndepStatistic(ZqStatModelResult& result, Numarc::ZqRanNumEngine& engine,
                                             std::uint64_t numSimulations, unsigned int statType,
                                             const std::vector<double>& data1, std::uint64_t numCols1,
                                             bool isSimilarity1, const std::vector<double>& data2,
                                             std::uint64_t numCols2, bool isSimilarity2) {
  constexpr const char* kRoutine = "ZqGetPValueForTwoSampleIndepStatistic";
  const ZqTwoSampleIndependenceStatistic statistic(statType);
  const double observed = statistic(result, data1, numCols1, isSimilarity1, data2, numCols2, isSimilarity2);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return kBad;
  }
  std::vector<double> simulated;
  result = statistic.SimulateStatisticUnderIndependence(simulated, engine, numSimulations, data1, numCols1,
                                                        isSimilarity1, data2, numCols2, isSimilarity2);
  if (result.NotSuccessful()) {
    result.AddCallContext(kRoutine);
    return kBad;
  }
  // Without simulated values there is neither a distribution nor a line to
  // print.
  if (simulated.empty()) {
    result = ZqMakeFailedResult(Failure::NoData, kRoutine);
    return kBad;
  }
  std::sort(simulated.begin(), simulated.end());
  const double cdf = ZqEmpiricalCDF(observed, simulated);
  std::ostringstream lines;
  lines << "min, max = " << simulated.front() << "; " << simulated.back() << '\n'
        << "90th percentile = " << ZqQuantile(0.9, simulated, 8) << '\n';
  Corvane::ZqPrint(Corvane::ZqOutputStream::Out, lines.str());
  return 1.0 - cdf;
}

}  // namespace Varimo
