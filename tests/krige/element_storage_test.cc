// The models over polymorphic elements: copies made through CreateCopy,
// owned by the model (the caller's object may die), and borrowed elements
// that must outlive the model. Both instantiated here from the template
// definitions, as a caller with an element type of its own does.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

#include "test_support.h"
#include "varimo/krige/krige_impl.h"
#include "varimo/krige/vector_krige.h"

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
