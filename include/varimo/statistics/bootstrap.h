// Bootstrap samples, drawn with replacement from the caller's engine, and
// statistics over many of them.
//
//   Numarc::ZqRanNumEngine engine(11);
//   std::vector<double> means;
//   ZqStatModelResult r = ZqBootstrapSampleStatisticForDataVec(
//       means, engine, ZqSampleStatisticType::Mean, data, 1000);
//
// A sample of n values makes n draws from one ZqUniformIntRNG(0, n - 1), in
// output order, so a seeded engine gives the same samples on every run.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "varimo/foundations/stat_model_result.h"
#include "varimo/platform/numarc/random_engine.h"
#include "varimo/statistics/two_sample_statistic.h"

namespace Varimo {

// Clears out and fills it with data.size() draws with replacement; nothing
// for empty data (and the engine is not used).
void ZqGetOneBootstrapSampleFromDataVec(Numarc::ZqRanNumEngine& engine, std::vector<double>& out,
                                        const std::vector<double>& data);
// The same; empty data fail with NoData, routine
// "ZqGetBootstrapSampleForDataVec", leaving out empty.
ZqStatModelResult ZqGetBootstrapSampleForDataVec(Numarc::ZqRanNumEngine& engine, std::vector<double>& out,
                                                 const std::vector<double>& data);

// As above for pairs: whole pairs are drawn together.
void ZqGetOneBootstrapSampleFromDataPairVec(Numarc::ZqRanNumEngine& engine, ZqPairSample& out,
                                            const ZqPairSample& pairs);
// Raises Corvane::ZqThrow.Fatal("Bad implementation--need to fix!") on
// every call, before anything else: this routine is known to be in need of
// repair, and a caller whose handler ends the program on Fatal stops here.
// Under a handler that returns, it then does what the vector form does, in
// routine "ZqGetBootstrapSampleForDataPairVec". Every bootstrap of a
// statistic over pairs below goes through it.
ZqStatModelResult ZqGetBootstrapSampleForDataPairVec(Numarc::ZqRanNumEngine& engine, ZqPairSample& out,
                                                     const ZqPairSample& pairs);

// numSamples values of the one-sample statistic statType (with its parameter
// in the second form), each on a fresh bootstrap sample of data. values is
// cleared first. Zero samples succeed at once without using the engine. A
// failure stops the loop, adds "ZqBootstrapSampleStatisticForDataVec" to the
// chain and leaves the values gathered so far; empty data fail with NoData.
// Cost: numSamples times the statistic on n values.
ZqStatModelResult ZqBootstrapSampleStatisticForDataVec(std::vector<double>& values, Numarc::ZqRanNumEngine& engine,
                                                       unsigned int statType, const std::vector<double>& data,
                                                       std::uint64_t numSamples);
ZqStatModelResult ZqBootstrapSampleStatisticForDataVec(std::vector<double>& values, Numarc::ZqRanNumEngine& engine,
                                                       unsigned int statType, double parameter,
                                                       const std::vector<double>& data, std::uint64_t numSamples);

// The same for the two-sample statistic statType on pairs, routine
// "ZqBootstrapTwoSampleStatisticForDataPairVec", and for the pair statistic,
// routine "ZqBootstrapTwoSamplePairStatisticForDataPairVec". Each sample
// raises the Fatal of ZqGetBootstrapSampleForDataPairVec.
ZqStatModelResult ZqBootstrapTwoSampleStatisticForDataPairVec(std::vector<double>& values,
                                                              Numarc::ZqRanNumEngine& engine, unsigned int statType,
                                                              const ZqPairSample& pairs, std::uint64_t numSamples);
ZqStatModelResult ZqBootstrapTwoSamplePairStatisticForDataPairVec(ZqPairSample& pairValues,
                                                                  Numarc::ZqRanNumEngine& engine,
                                                                  unsigned int statType, const ZqPairSample& pairs,
                                                                  std::uint64_t numSamples);

}  // namespace Varimo
