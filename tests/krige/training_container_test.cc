// The training container: copies folded into unique elements, responses of
// a group by method, ids, the distance table and its one call per pair,
// covariance filling, and the variogram pairs. The models over polymorphic
// elements: copies made through CreateCopy, owned by the model (the
// caller's object may die), and borrowed elements that must outlive the
// model. Both instantiated here from the template definitions, as a caller
// with an element type of its own does. The distances on vectors of numbers
// and the rows each admits.
#include "varimo/krige/training_container.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "varimo/krige/krige_impl.h"
#include "varimo/krige/krige_kernels.h"
#include "varimo/krige/krige_options.h"
#include "varimo/krige/minmax_distance.h"
#include "varimo/krige/vector_krige.h"
#include "varimo/krige/vector_model.h"
#include "varimo/platform/corvane/error_handler.h"

namespace Varimo {
// A named namespace, not an anonymous one: the models are explicitly
// instantiated below, and for a type of internal linkage the compiler
// concludes that no neighbour search can exist and warns about the call.
namespace storage_test {

class Site {
 public:
  virtual ~Site() = default;
  virtual double Position() const = 0;
  virtual Site* CreateCopy() const = 0;
};

class Point final : public Site {
 public:
  explicit Point(double x) : x_(x) {}
  double Position() const override { return x_; }
  Site* CreateCopy() const override { return new Point(*this); }

 private:
  double x_;
};

class SiteDistance final : public ZqKrigeDistanceFxn<Site> {
 public:
  double operator()(const Site& a, const Site& b) const override { return std::fabs(a.Position() - b.Position()); }
  SiteDistance* CreateCopy() const override { return new SiteDistance(*this); }
};

using Owned = ZqKrigeCopyPtrElementStorage<Site>;
using Borrowed = ZqKrigeUnmanagedPtrElementStorage<Site>;

}  // namespace storage_test

using storage_test::Borrowed;
using storage_test::Owned;
using storage_test::Point;
using storage_test::Site;
using storage_test::SiteDistance;

template class ZqOrdinaryKrige<Site, Owned>;
template class ZqSimpleKrige<Site, Borrowed>;
template class ZqLocalOrdinaryKrige<Site, Owned>;

namespace {

using Element = std::vector<double>;
using Container = ZqKrigeTrainingContainer<Element, ZqVectorStorage>;
using Pairs = std::vector<std::pair<double, double>>;

// |x - y| on the first coordinate, counting its calls.
class CountingDistance final : public ZqKrigeDistanceFxn<Element> {
 public:
  explicit CountingDistance(int* calls) : calls_(calls) {}
  double operator()(const Element& x, const Element& y) const override {
    ++*calls_;
    return std::fabs(x[0] - y[0]);
  }
  CountingDistance* CreateCopy() const override { return new CountingDistance(*this); }

 private:
  int* calls_;
};

Container::Record Record(double x, double response, bool unmeasured = false, unsigned int id = 0,
                         bool hasID = false) {
  Container::Record record;
  record.element = {x};
  record.response = response;
  record.isUnmeasured = unmeasured;
  record.id = id;
  record.hasID = hasID;
  return record;
}

// A container whose distance calls nobody counts.
int gUncounted = 0;
Container Plain() { return Container(CountingDistance(&gUncounted), ZqKrigeUniqueResponseMethod::Mean); }

TEST(TrainingContainer, CopiesFoldIntoOneElementWhoseResponseFollowsTheMethod) {
  auto responseOf = [](unsigned int method, const std::vector<Container::Record>& records) {
    int calls = 0;
    Container container(CountingDistance(&calls), method);
    for (const auto& r : records) EXPECT_TRUE(container.AddElement(r));
    EXPECT_EQ(container.GetNumUnique(), 1u);
    return container.GetUniqueResponse(0);
  };
  const std::vector<Container::Record> three = {Record(1, 1), Record(1, 2), Record(1, 6)};
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Mean, three), 3.0);
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Min, three), 1.0);
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Max, three), 6.0);
  // An unmeasured copy counts only where no measured one exists.
  const std::vector<Container::Record> mixed = {Record(1, 9, true), Record(1, 5)};
  for (unsigned int method = 0; method < 3; ++method) EXPECT_EQ(responseOf(method, mixed), 5.0) << method;
  const std::vector<Container::Record> unmeasured = {Record(1, 9, true), Record(1, 5, true)};
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Mean, unmeasured), 7.0);
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Min, unmeasured), 5.0);
  EXPECT_EQ(responseOf(ZqKrigeUniqueResponseMethod::Max, unmeasured), 9.0);

  Corvane::ZqScopedThrowCapture capture;
  EXPECT_EQ(responseOf(7, three), 3.0);
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            std::vector<std::string>{"Invalid KrigeUniqueResponseMethod 7, defaulting to mean"});

  // The id of an element is the first id given among its copies.
  Container ids = Plain();
  ids.AddElement(Record(1, 1, false, 99, false));
  ids.AddElement(Record(1, 1, false, 12, true));
  ids.AddElement(Record(1, 1, false, 13, true));
  ids.AddElement(Record(2, 1, false, 99, false));
  EXPECT_EQ(ids.GetUniqueID(0), 12u);
  EXPECT_EQ(ids.GetUniqueID(1), 99u);
}

TEST(EuclideanDistance, WholeVectorsOrTheirLeadingCoordinates) {
  const ZqEuclideanDistance all, leading(2);
  EXPECT_EQ(all({0.0, 0.0, 9.0}, {3.0, 4.0, 9.0}), 5.0);
  EXPECT_TRUE(std::isnan(all({0.0, 0.0}, {3.0, 4.0, 1.0})));
  // Only the first two coordinates count, whatever follows them.
  EXPECT_EQ(leading({0.0, 0.0, 9.0}, {3.0, 4.0}), 5.0);
  EXPECT_TRUE(std::isnan(leading({0.0}, {3.0, 4.0})));
  EXPECT_EQ(leading.GetDimensions(), 2u);
  EXPECT_EQ(all.GetDimensions(), 0u);
}

TEST(MinMaxDistance, CountsBitsAndValuesItCannotCompare) {
  const ZqMinMaxDistance all, leading(2);
  // By hand: sum of minima 1 + 0 + 1 over sum of maxima 2 + 1 + 1.
  EXPECT_EQ(all({2.0, 0.0, 1.0}, {1.0, 1.0, 1.0}), 0.5);
  EXPECT_EQ(all({1.0, 1.0, 1.0}, {2.0, 0.0, 1.0}), 0.5);
  // On bits, one minus Tanimoto: one bit shared of four set in either.
  EXPECT_EQ(all({1.0, 1.0, 0.0, 0.0}, {1.0, 0.0, 1.0, 1.0}), 0.75);
  EXPECT_EQ(all({3.0, 0.0, 5.0}, {3.0, 0.0, 5.0}), 0.0);
  EXPECT_EQ(all({0.0, 0.0}, {0.0, 0.0}), 0.0);  // two empty fingerprints are the same
  EXPECT_EQ(all({0.0, 0.0}, {0.0, 4.0}), 1.0);
  // Only the first two coordinates count: a drift value after them may be
  // negative.
  EXPECT_DOUBLE_EQ(leading({2.0, 0.0, -9.0}, {1.0, 1.0}), 2.0 / 3.0);
  EXPECT_TRUE(std::isnan(leading({1.0}, {1.0, 1.0})));
  EXPECT_EQ(leading.GetDimensions(), 2u);
  EXPECT_EQ(all.GetDimensions(), 0u);
  // Counts are never negative, infinite or missing; vectors of other sizes
  // are not comparable.
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  for (const std::vector<double>& bad : {std::vector<double>{1.0, -1.0}, {inf, 1.0}, {nan, 1.0}, {1.0}}) {
    EXPECT_TRUE(std::isnan(all(bad, {1.0, 1.0})));
    EXPECT_TRUE(std::isnan(all({1.0, 1.0}, bad)));
  }
}

TEST(VectorModel, UsableRowsUnderEachMetric) {
  ZqVectorKrigeSettings settings;
  settings.model = ZqVectorKrigeSettings::Model::Universal;
  settings.numFeatures = 2;
  settings.numDrift = 1;
  const std::vector<double> negativeDrift{1.0, 2.0, -3.0}, negativeFeature{1.0, -2.0, 3.0};
  const std::vector<double> missing{1.0, std::numeric_limits<double>::quiet_NaN(), 3.0};
  EXPECT_TRUE(ZqIsUsableRow(settings, negativeFeature));
  EXPECT_FALSE(ZqIsUsableRow(settings, missing));
  settings.metric = ZqVectorKrigeSettings::Metric::MinMax;
  EXPECT_TRUE(ZqIsUsableRow(settings, negativeDrift));
  EXPECT_FALSE(ZqIsUsableRow(settings, negativeFeature));
  EXPECT_FALSE(ZqIsUsableRow(settings, missing));
  // Without a drift every value is a coordinate.
  settings.model = ZqVectorKrigeSettings::Model::Ordinary;
  settings.numFeatures = 3;
  settings.numDrift = 0;
  EXPECT_FALSE(ZqIsUsableRow(settings, negativeDrift));
  EXPECT_TRUE(ZqIsUsableRow(settings, {0.0, 0.0, 7.0}));
}

TEST(TrainingContainer, DistancesAreComputedOnceAgainstRepresentatives) {
  int calls = 0;
  Container container(CountingDistance(&calls), ZqKrigeUniqueResponseMethod::Mean);
  for (double x : {0.0, 1.0, 3.0, 6.0, 10.0}) container.AddElement(Record(x, x));
  EXPECT_EQ(calls, 10);  // N (N - 1) / 2
  EXPECT_EQ(container.GetUniqueDistance(4, 1), 9.0);
  EXPECT_EQ(container.GetUniqueDistance(1, 4), 9.0);
  EXPECT_EQ(container.GetUniqueDistance(2, 2), 0.0);

  // A copy stops at its element: 1e-31 is the same element, 1e-29 is not.
  calls = 0;
  container.AddElement(Record(1.0 + 0.0, 7.0));
  EXPECT_EQ(calls, 2);
  container.AddElement(Record(1e-31, 7.0));
  EXPECT_EQ(container.GetNumUnique(), 5u);
  EXPECT_EQ(container.GetUniqueOfData(6), 0u);
  container.AddElement(Record(1e-29, 7.0));
  EXPECT_EQ(container.GetNumUnique(), 6u);
  EXPECT_EQ(container.GetUniqueMembers(1), (std::vector<std::size_t>{1, 5}));
  EXPECT_EQ(container.GetDataDistance(5, 4), 9.0);

  // Copies of the container are deep and keep the table.
  Container copy(container);
  container.Clear();
  EXPECT_EQ(container.GetNumData(), 0u);
  EXPECT_EQ(copy.GetNumUnique(), 6u);
  EXPECT_EQ(copy.GetUniqueDistance(4, 1), 9.0);
}

// 150 elements make a table of 11175 distances, more than its first block
// holds, with copies (rows begun and dropped) between new elements.
TEST(TrainingContainer, TableAcrossBlocksKeepsEveryRowThroughCopies) {
  Container container = Plain();
  auto position = [](int i) { return 0.5 * i * i + 3.0 * i; };
  for (int i = 0; i < 150; ++i) {
    container.AddElement(Record(position(i), i));
    if (i % 7 == 3) container.AddElement(Record(position(i), -i));
  }
  ASSERT_EQ(container.GetNumUnique(), 150u);
  const Container copy(container);
  Container assigned = Plain();
  assigned = container;
  for (int u = 0; u < 150; ++u) {
    for (int v = 0; v < 150; ++v) {
      const double expected = std::fabs(position(u) - position(v));
      ASSERT_EQ(container.GetUniqueDistance(u, v), expected) << u << " " << v;
      ASSERT_EQ(copy.GetUniqueDistance(u, v), expected) << u << " " << v;
      ASSERT_EQ(assigned.GetUniqueDistance(u, v), expected) << u << " " << v;
    }
  }
  // Rows added to a copy go on after its packed rows.
  assigned.AddElement(Record(-1000.0, 0.0));
  EXPECT_EQ(assigned.GetUniqueDistance(150, 149), std::fabs(-1000.0 - position(149)));
  EXPECT_EQ(assigned.GetUniqueDistance(148, 3), std::fabs(position(148) - position(3)));
}

TEST(TrainingContainer, PairsCoverMeasuredRecordsAndCopiesAtZero) {
  Container container = Plain();
  container.AddElement(Record(0, 1));
  container.AddElement(Record(0, 2));
  container.AddElement(Record(0, 4));
  Pairs pairs;
  ASSERT_TRUE(ZqGetDistAndDiff(pairs, container, false));
  EXPECT_EQ(pairs, (Pairs{{0.0, -1.0}, {0.0, -3.0}, {0.0, -2.0}}));

  container.AddElement(Record(2, 10, true));
  container.AddElement(Record(3, 20, true));
  ASSERT_TRUE(ZqGetDistAndDiff(pairs, container, false));
  EXPECT_EQ(pairs.size(), 3u);
  ASSERT_TRUE(ZqGetDistAndDiff(pairs, container, true));
  // Each unmeasured record pairs with the three measured ones, never with
  // the other unmeasured one.
  EXPECT_EQ(pairs.size(), 9u);
  EXPECT_EQ(pairs.back(), (std::pair<double, double>{3.0, -16.0}));

  container.Clear();
  pairs.emplace_back(1.0, 1.0);
  EXPECT_TRUE(ZqGetDistAndDiff(pairs, container, true));
  EXPECT_TRUE(pairs.empty());
}

TEST(TrainingContainer, CovarianceFillsTheLeadingBlock) {
  Container container = Plain();
  container.AddElement(Record(0, 1));
  container.AddElement(Record(0.5, 1));
  ZqKrigeLinearKernel kernel;  // range 0.5, sill 1
  kernel.SetNugget(0.25);
  Eigen::MatrixXd matrix = Eigen::MatrixXd::Constant(3, 3, 7.0);
  ASSERT_TRUE(ZqFillCovarianceMatrix(matrix, container, kernel));
  Eigen::MatrixXd expected = Eigen::MatrixXd::Constant(3, 3, 7.0);
  expected.topLeftCorner(2, 2) << 0.75, 0.0, 0.0, 0.75;  // sill - nugget on the diagonal
  EXPECT_EQ(matrix, expected);

  Corvane::ZqScopedThrowCapture capture;
  Eigen::MatrixXd notSquare(2, 3), small(1, 1);
  EXPECT_FALSE(ZqFillCovarianceMatrix(notSquare, container, kernel));
  EXPECT_FALSE(ZqFillCovarianceMatrix(small, container, kernel));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Error),
            (std::vector<std::string>{
                "ZqKrigeTrainingContainer<T,TT>::FillCovarianceMatrix, not a square matrix",
                "ZqKrigeTrainingContainer<T,TT>::FillCovarianceMatrix,matrix is to small (1x1) vs 2"}));
}

// Ten times the second coordinate as a property, present when positive.
class PositiveSecond final : public ZqPropertyFxn<Element> {
 public:
  bool Has(const Element& x) const override { return x[1] > 0.0; }
  double Get(const Element& x) const override { return 10.0 * x[1]; }
  PositiveSecond* CreateCopy() const override { return new PositiveSecond(*this); }
};

TEST(TrainingContainer, PropertiesAreReadAtAdditionAndAveragedOverMeasuredCopies) {
  ZqPropertyListPushFxn<Element> list;
  EXPECT_TRUE(list.HasProperties({0.0, -1.0}));  // an empty list has them all
  list.Push(PositiveSecond());
  ZqPropertyListPushFxn<Element> copy(list);
  list.Clear();
  ASSERT_EQ(copy.GetSize(), 1u);

  auto record = [](double x, double y, bool unmeasured) {
    Container::Record r = Record(x, 1.0, unmeasured);
    r.element = {x, y};
    return r;
  };
  int calls = 0;
  Container container(CountingDistance(&calls), copy, ZqKrigeUniqueResponseMethod::Mean);
  EXPECT_FALSE(container.AddElementAndProperties(record(0, -1, false)));
  EXPECT_EQ(container.GetNumData(), 0u);
  // Three copies of x = 0 (the distance reads x only) with properties 10,
  // 30 and 80; the unmeasured one stays out of the mean.
  ASSERT_TRUE(container.AddElementAndProperties(record(0, 1, false)));
  EXPECT_EQ(container.GetUniqueProperties(0), std::vector<double>{10.0});
  ASSERT_TRUE(container.AddElementAndProperties(record(0, 8, true)));
  ASSERT_TRUE(container.AddElementAndProperties(record(0, 3, false)));
  EXPECT_EQ(container.GetUniqueProperties(0), std::vector<double>{20.0});
  EXPECT_EQ(container.GetData(1).properties, std::vector<double>{80.0});
}

TEST(ElementStorage, PolymorphicElementsKrigeAsVectorsDo) {
  ZqOrdinaryKrige<Site, Owned> owned(SiteDistance(), -1.0, 0, false, ZqKrigeUniqueResponseMethod::Mean);
  ZqOrdinaryKrige<std::vector<double>> plain(ZqEuclideanDistance(), -1.0, 0, false,
                                             ZqKrigeUniqueResponseMethod::Mean);
  for (int i = 0; i < 25; ++i) {
    const double x = 0.37 * i, y = std::sin(x) + 0.1 * (i % 3);
    auto temporary = std::make_unique<Point>(x);
    owned.AddTraining(*temporary, y);  // the model keeps its own copy
    plain.AddTraining({x}, y);
  }
  ASSERT_TRUE(owned.Train());
  ASSERT_TRUE(plain.Train());
  EXPECT_EQ(owned.GetKernel().GetName(), plain.GetKernel().GetName());
  EXPECT_EQ(owned.Predict(Point(2.2)), plain.Predict({2.2}));

  // Borrowed elements: the caller keeps them alive.
  std::vector<Point> sites;
  for (int i = 0; i < 25; ++i) sites.emplace_back(0.37 * i);
  ZqSimpleKrige<Site, Borrowed> borrowed(SiteDistance(), -1.0, 0, false, ZqKrigeUniqueResponseMethod::Mean);
  ZqSimpleKrige<std::vector<double>> plainSimple(ZqEuclideanDistance(), -1.0, 0, false,
                                                 ZqKrigeUniqueResponseMethod::Mean);
  for (int i = 0; i < 25; ++i) {
    borrowed.AddTraining(sites[i], std::cos(sites[i].Position()));
    plainSimple.AddTraining({sites[i].Position()}, std::cos(sites[i].Position()));
  }
  EXPECT_EQ(borrowed.Predict(Point(1.0)), plainSimple.Predict({1.0}));
  EXPECT_EQ(&borrowed.GetContainer().GetRepresentative(3), &sites[3]);
}

TEST(ElementStorage, LocalModelsOwnTheirElementsAndBorrowThemPerQuery) {
  ZqLocalOrdinaryKrige<Site, Owned> owned(SiteDistance(), 6, -1.0, 0, false, true, 500000,
                                          ZqKrigeUniqueResponseMethod::Mean);
  ZqLocalOrdinaryKrige<std::vector<double>> plain(ZqEuclideanDistance(), 6, -1.0, 0, false, true, 500000,
                                                  ZqKrigeUniqueResponseMethod::Mean);
  for (int i = 0; i < 30; ++i) {
    const double x = 0.29 * i, y = std::cos(x) + 0.05 * (i % 4);
    owned.AddTraining(*std::make_unique<Point>(x), y);
    plain.AddTraining({x}, y);
  }
  ASSERT_TRUE(owned.Train());
  ASSERT_TRUE(plain.Train());
  std::unique_ptr<ZqKrigeBase<Site>> copy(owned.CreateKrigeCopy());
  for (double x : {0.58, 3.3, 8.0}) {
    EXPECT_EQ(owned.Predict(Point(x)), plain.Predict({x}));
    EXPECT_EQ(copy->Predict(Point(x)), plain.Predict({x}));
  }
}

TEST(ElementStorage, UnmeasuredRecordsEnterTheVariogramOnlyWhenIncluded) {
  auto build = [](bool includeUnmeasured) {
    ZqOrdinaryKrige<std::vector<double>> model(ZqEuclideanDistance(), -1.0, 0, includeUnmeasured,
                                               ZqKrigeUniqueResponseMethod::Mean);
    for (int i = 0; i < 10; ++i) model.AddTraining({1.0 * i}, 0.1 * i);
    for (int i = 0; i < 5; ++i) model.AddUnmeasuredTraining({20.0 + i}, 5.0);
    return model.GetFullVariogram();
  };
  auto count = [](const ZqFullVariogram& variogram) {
    unsigned int pairs = 0;
    for (unsigned int b = 0; b < variogram.GetNumBins(); ++b) pairs += variogram.GetNumBinElements(b);
    return pairs;
  };
  EXPECT_EQ(count(build(false)), 45u);  // 10 measured: 45 pairs
  EXPECT_EQ(count(build(true)), 95u);   // plus 5 x 10 mixed pairs, no unmeasured pair
}

}  // namespace
}  // namespace Varimo
