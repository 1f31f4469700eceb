// The krige report of a held-out bzr compound (RDKit's benzodiazepine
// receptor set, pIC50 in ACTIVITY): what it draws, where and in which
// order on a recording image, the rules by which panels and texts are left
// out, and the files it writes.
#include "varimo/mol/krige_report.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "png_pixels.h"
#include "varimo/krige/kernel_fit.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/lineart/depiction.h"
#include "varimo/platform/lineart/recorded_image.h"
#include "varimo/platform/molkit/molecule_files.h"

namespace Varimo {
namespace {

using Kind = Lineart::ZqDrawCall::Kind;
using Lineart::ZqDrawCall;
using Lineart::ZqImage;
using Mols = std::vector<std::unique_ptr<Molkit::ZqMolBase>>;

double Activity(const Molkit::ZqMolBase& mol) { return std::stod(Molkit::ZqGetSDData(mol, "ACTIVITY")); }

// One model for the whole suite: trained on bzr without every tenth
// molecule, predicting the first of those held out.
class KrigeReport : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::vector<std::string> errors;
    ASSERT_TRUE(Molkit::ZqReadSDFile("/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf", mols_, errors));
    model_ = std::make_unique<ZqMolKrige>(ZqGlobalKrigeOptions());
    for (std::size_t i = 0; i < mols_.size(); ++i) {
      if (i % 10 == 0) continue;
      ASSERT_TRUE(model_->AddTraining(*mols_[i], Activity(*mols_[i])));
    }
    ASSERT_TRUE(model_->Train());
  }
  static void TearDownTestSuite() {
    model_.reset();
    mols_.clear();
  }

  const Molkit::ZqMolBase& Query() const { return *mols_[10]; }
  ZqMolKrigeResult Predict() const { return model_->GetResult(Query()); }
  static ZqKrigeReportOptions Options() {
    ZqKrigeReportOptions options;
    options.SetTitle("bzr held out");
    options.SetResponseName("pIC50");
    return options;
  }

  std::string Path(const std::string& name) {
    const std::string path = ::testing::TempDir() + "varimo_report_" + std::to_string(::getpid()) + "_" + name;
    written_.push_back(path);
    return path;
  }
  void TearDown() override {
    for (const std::string& path : written_) std::remove(path.c_str());
  }

  static Mols mols_;
  static std::unique_ptr<ZqMolKrige> model_;

 private:
  std::vector<std::string> written_;
};
Mols KrigeReport::mols_;
std::unique_ptr<ZqMolKrige> KrigeReport::model_;

std::vector<std::string> Texts(const ZqImage& image) {
  std::vector<std::string> texts;
  for (const ZqDrawCall& call : image.GetCalls()) {
    if (call.kind == Kind::Text) texts.push_back(call.text);
  }
  return texts;
}

// Helpers that restate the report's arithmetic independently of it.

std::string Printf(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// The chance of the prediction below x, through erfc rather than the
// library's erf.
double Below(const ZqMolKrigeResult& r, double x) {
  return 0.5 * std::erfc(-(x - r.GetResponse()) / std::sqrt(2.0 * r.GetVariance()));
}

// Element indices by decreasing |weight|, then increasing distance.
std::vector<unsigned int> ByWeight(const ZqMolKrigeResult& r) {
  std::vector<unsigned int> order;
  for (unsigned int i = 0; i < r.GetNumElements(); ++i) order.push_back(i);
  std::stable_sort(order.begin(), order.end(), [&](unsigned int a, unsigned int b) {
    const double wa = std::fabs(r.GetElementWeight(a)), wb = std::fabs(r.GetElementWeight(b));
    return wa != wb ? wa > wb : r.GetElementDistance(a) < r.GetElementDistance(b);
  });
  return order;
}

struct Rect {
  Lineart::Zq2DPoint a;
  Lineart::Zq2DPoint b;
  bool operator==(const Rect&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Rect& r) {
  return out << "(" << r.a.x << "," << r.a.y << ")-(" << r.b.x << "," << r.b.y << ")";
}

// The rectangles drawn with the report's border pen, in order.
std::vector<Rect> ReportBorders(const ZqImage& image) {
  const Lineart::ZqPen pen(Corvane::ZqWhite, Corvane::ZqBlack, 0, 1.0, 0xFFFF);
  std::vector<Rect> borders;
  for (const ZqDrawCall& call : image.GetCalls()) {
    if (call.kind == Kind::Rectangle && call.pen == pen) borders.push_back({call.a, call.b});
  }
  return borders;
}

// The texts of the training panel's first `cells` cells: the molecules of
// the largest weights, in order.
void AppendTrainingCells(std::vector<std::string>& texts, const ZqMolKrigeResult& r, std::size_t cells) {
  const std::vector<unsigned int> order = ByWeight(r);
  for (std::size_t j = 0; j < cells; ++j) {
    texts.insert(texts.end(), {"pIC50 " + Printf("%.3f", r.GetElementResponse(order[j])), "Weight",
                               Printf("%6.3f", r.GetElementWeight(order[j]))});
  }
}

std::size_t Count(const std::vector<std::string>& texts, const std::string& text) {
  return static_cast<std::size_t>(std::count(texts.begin(), texts.end(), text));
}

// ------------------------------------------------------------ the whole report

TEST_F(KrigeReport, TextsComeInTheOrderOfThePanels) {
  ZqMolKrigeResult result = Predict();
  ASSERT_TRUE(result.Valid());
  ZqKrigeReportOptions options = Options();
  options.PushSDProperty("ACTIVITY", "Measured");
  options.PushClassificationBoundry(7.0);
  options.PushClassificationBoundry(8.0);
  ZqImage page(800, 800);
  ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 0));

  // The training values share the decimals of their spread: four figures
  // of a spread between 1 and 10 leave three.
  double lo = 1e300, hi = -1e300;
  for (unsigned int i = 0; i < result.GetNumElements(); ++i) {
    lo = std::min(lo, result.GetElementResponse(i));
    hi = std::max(hi, result.GetElementResponse(i));
  }
  ASSERT_GE(hi - lo, 1.0);
  ASSERT_LT(hi - lo, 10.0);
  std::vector<std::string> expected{"bzr held out", "Similar Training Molecules"};
  // The body (800 x 760) is wider than high: two rows of three molecules.
  AppendTrainingCells(expected, result, 6);
  expected.insert(expected.end(), {"  Contributes to Higher pIC50", "  Contributes to Lower pIC50", " Measured",
                                   " " + Molkit::ZqGetSDData(Query(), "ACTIVITY"), "Properties",
                                   "pIC50 " + Printf("%.3f", result.GetResponse())});
  for (const double tick : {lo, 7.0, 8.0, hi}) expected.push_back(Printf("%.3f", tick));
  expected.push_back("Probability");
  // Each class clipped to the training range.
  expected.push_back(Printf("%2.0f%%", 100.0 * (Below(result, 7.0) - Below(result, lo))));
  expected.push_back(Printf("%2.0f%%", 100.0 * (Below(result, 8.0) - Below(result, 7.0))));
  expected.push_back(Printf("%2.0f%%", 100.0 * (Below(result, hi) - Below(result, 8.0))));
  expected.insert(expected.end(), {"Training Molecules", "This Molecule", "Distance", "Semivariance", "Variogram",
                                   "Model Quality", "Conf", "Vari", "Meas"});
  // The dial's middle: the lowest of the three scores; every training
  // molecule is measured, so the weight share is 1.
  const double conf = 1.0 - result.GetVariance() / result.GetKernel().GetSill();
  const double fitness = ZqGetFitness(result.GetKernel(), result.GetVariogram());
  const double vari = 1.0 - std::tanh(2.0 * fitness);  // 2 / (exp(-4f) + 1) - 1 is tanh(2f)
  expected.push_back(Printf("%2.0f%%", 100.0 * std::max(0.001, std::min({conf, vari, 1.0}))));
  EXPECT_EQ(Texts(page), expected);
}

TEST_F(KrigeReport, BordersFollowTheLayoutOfTheImagesShape) {
  ZqMolKrigeResult result = Predict();
  ZqKrigeReportOptions options = Options();
  {
    // Wide, under a title strip of 5%: the molecule and the distribution on
    // top, the variogram under the dial at the right, training below.
    ZqImage page(800, 800);
    ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 0));
    const std::vector<Rect> expected{{{660, 192}, {800, 344}},   // variogram
                                     {{660, 40}, {800, 192}},    // dial
                                     {{400, 40}, {660, 344}},    // distribution
                                     {{0, 40}, {400, 344}}};     // molecule
    EXPECT_EQ(ReportBorders(page), expected);
  }
  {
    // Upright without a title: training at the right, bordered; the
    // molecule over the distribution over variogram and dial at the left.
    options.ClearTitle();
    ZqImage page(600, 900);
    ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 0));
    const std::vector<Rect> expected{{{240, 0}, {600, 900}},   // training
                                     {{0, 720}, {120, 900}},   // variogram
                                     {{120, 720}, {240, 900}}, // dial
                                     {{0, 0}, {240, 432}},     // molecule
                                     {{0, 432}, {240, 720}}};  // distribution
    EXPECT_EQ(ReportBorders(page), expected);
    EXPECT_EQ(Count(Texts(page), "Weight"), 6u);  // 3 rows of 2
  }
  {
    // Without the details the distribution takes the rest of its column.
    options.SetShowKrigeDetails(false);
    ZqImage page(600, 900);
    ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 0));
    const std::vector<Rect> expected{{{240, 0}, {600, 900}}, {{0, 0}, {240, 540}}, {{0, 540}, {240, 900}}};
    EXPECT_EQ(ReportBorders(page), expected);
    const std::vector<std::string> texts = Texts(page);
    EXPECT_EQ(Count(texts, "Variogram"), 0u);
    EXPECT_EQ(Count(texts, "Model Quality"), 0u);
  }
}

TEST_F(KrigeReport, SkipRules) {
  ZqMolKrigeResult result = Predict();
  const ZqKrigeReportOptions options = Options();
  {
    // One of rows and cols 0 leaves the training panel out, and is no failure.
    ZqImage page(800, 800);
    ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 2));
    const std::vector<std::string> texts = Texts(page);
    EXPECT_EQ(Count(texts, "Similar Training Molecules"), 0u);
    EXPECT_EQ(Count(texts, "Weight"), 0u);
    EXPECT_EQ(Count(texts, "Variogram"), 1u);
  }
  {
    // More training molecules than cells: the largest weights, in order.
    ZqImage page(800, 800);
    ASSERT_TRUE(ZqKrigeRenderTraining(page, result, options, 2, 1));
    std::vector<std::string> expected{"Similar Training Molecules"};
    AppendTrainingCells(expected, result, 2);
    EXPECT_EQ(Texts(page), expected);
  }
  {
    // A molecule needs 100 pixels each way; an invalid result fails every
    // panel that shows it, and nothing of it is written to a file.
    ZqImage small(99, 400);
    EXPECT_FALSE(ZqKrigeRenderMolecule(small, result, Query(), options));
    ZqImage page(800, 800);
    ZqImage tiny(150, 150);
    EXPECT_FALSE(ZqKrigeRenderReport(tiny, result, Query(), options, 0, 0));
    ZqMolKrigeResult invalid;
    EXPECT_FALSE(ZqKrigeRenderReport(page, invalid, Query(), options, 0, 0));
    EXPECT_FALSE(ZqKrigeRenderTraining(page, invalid, options, 2, 2));
    EXPECT_FALSE(ZqKrigeRenderConfidenceRadial(page, invalid));
    EXPECT_FALSE(ZqKrigeRenderMolecule(page, invalid, Query(), options));
    EXPECT_FALSE(ZqKrigeRenderDistribution(page, invalid, options));
    EXPECT_FALSE(ZqKrigeRenderVariogram(page, invalid));
    const std::string path = Path("invalid.png");
    EXPECT_FALSE(ZqKrigeRenderReport(path, invalid, Query(), options));
    EXPECT_FALSE(std::ifstream(path).good());
  }
}

// ------------------------------------------------------------ panels

TEST_F(KrigeReport, ContributionsAreSquashedByTheHeavyAtomCount) {
  ZqMolKrigeResult result = Predict();
  ZqKrigeReportOptions options = Options();
  options.SetContributionBaseline(7.0);
  options.SetContributionPositiveColor(Corvane::ZqDarkGreen);
  ZqImage page(400, 300);
  ASSERT_TRUE(ZqKrigeRenderMolecule(page, result, Query(), options));
  ASSERT_EQ(page.GetCalls().size(), 1u);
  const std::shared_ptr<const Lineart::Zq2DMolDisplay>& display = page.GetCalls()[0].molecule;
  ASSERT_TRUE(display);
  const Molkit::ZqMolBase& drawn = display->GetMol();
  // The drawing copy has no hydrogens; its atoms are the query's heavy ones.
  ASSERT_EQ(drawn.GetNumAtoms(), Query().GetNumHeavyAtoms());
  const double n = static_cast<double>(drawn.GetNumAtoms());
  const std::vector<double> raw = result.GetAtomContributions(drawn, 7.0);
  const unsigned int tag = Corvane::ZqGetTag("Contribution");
  bool positive = false, negative = false;
  for (std::size_t a = 0; a < drawn.GetNumAtoms(); ++a) {
    const double* value = drawn.GetAtom(a).GetData<double>(tag);
    ASSERT_NE(value, nullptr);
    // 2 / (exp(-n c) + 1) - 1 is tanh(n c / 2).
    EXPECT_NEAR(*value, std::tanh(0.5 * n * raw[a]), 1e-12);
    positive = positive || *value > 0.0;
    negative = negative || *value < 0.0;
  }
  EXPECT_TRUE(positive && negative);
  // The map's key runs from the options' negative to positive colour.
  ASSERT_TRUE(display->GetColorKey());
  EXPECT_EQ(display->GetColorKey()->low, Corvane::ZqRed);
  EXPECT_EQ(display->GetColorKey()->high, Corvane::ZqDarkGreen);
}

TEST_F(KrigeReport, OnlyATrainingMoleculeItselfIsFramedInGreen) {
  const Lineart::ZqPen green(Corvane::ZqLightGrey, Corvane::ZqGreen, 0, 2.0, 0xFFFF);
  auto greenBorders = [&](const ZqMolKrigeResult& result) {
    ZqImage page(600, 600);
    EXPECT_TRUE(ZqKrigeRenderTraining(page, result, Options(), 2, 2));
    std::vector<Rect> found;
    for (const ZqDrawCall& call : page.GetCalls()) {
      if (call.kind == Kind::Rectangle && call.pen == green) found.push_back({call.a, call.b});
    }
    return found;
  };
  // A training molecule predicts itself with weight 1: the first cell.
  const ZqMolKrigeResult itself = model_->GetResult(*mols_[1]);
  ASSERT_NEAR(itself.GetElementWeight(ByWeight(itself)[0]), 1.0, 1e-6);
  EXPECT_EQ(greenBorders(itself), (std::vector<Rect>{{{0, 30}, {300, 315}}}));
  EXPECT_TRUE(greenBorders(Predict()).empty());
}

TEST_F(KrigeReport, ClassificationPieSlicesAreTheClassProbabilities) {
  const ZqMolKrigeResult result = Predict();
  ZqKrigeReportOptions options = Options();
  ZqImage empty(300, 200);
  EXPECT_TRUE(ZqKrigeRenderClassification(empty, result, options, false));
  EXPECT_TRUE(empty.GetCalls().empty());

  options.PushClassificationBoundry(8.0);
  options.PushClassificationBoundry(7.0);
  options.PushClassificationColor(Corvane::ZqLightGrey);
  options.PushClassificationColor(Corvane::ZqDarkBlue);
  options.PushClassificationColor(Corvane::ZqDarkRed);
  ZqImage pie(300, 200);
  ASSERT_TRUE(ZqKrigeRenderClassification(pie, result, options, false));
  const std::vector<ZqDrawCall>& calls = pie.GetCalls();
  ASSERT_EQ(calls.size(), 4u);
  // Unclipped classes, cumulated from angle 0: below 7, 7 to 8, above 8.
  const double cumulative[4] = {0.0, Below(result, 7.0), Below(result, 8.0), 1.0};
  const Corvane::ZqColor colors[3] = {Corvane::ZqLightGrey, Corvane::ZqDarkBlue, Corvane::ZqDarkRed};
  for (int k = 0; k < 3; ++k) {
    SCOPED_TRACE(k);
    EXPECT_EQ(calls[k].kind, Kind::Pie);
    EXPECT_EQ(calls[k].a, Lineart::Zq2DPoint(150, 100));
    EXPECT_EQ(calls[k].radius, 100.0);
    EXPECT_NEAR(calls[k].startAngle, 360.0 * cumulative[k], 1e-9);
    EXPECT_NEAR(calls[k].endAngle, 360.0 * cumulative[k + 1], 1e-9);
    EXPECT_EQ(calls[k].pen, Lineart::ZqPen(colors[k], colors[k], 1, 1.0, 0xFFFF));
  }
  EXPECT_EQ(calls[3].kind, Kind::Circle);

  // With the legend, the pie and the two line samples side by side.
  ZqImage both(600, 200);
  ASSERT_TRUE(ZqKrigeRenderClassification(both, result, options, true));
  EXPECT_EQ(Texts(both), (std::vector<std::string>{"Training Molecules", "This Molecule"}));
  EXPECT_LT(both.GetCalls()[0].a.x, 300.0);
}

TEST_F(KrigeReport, UnloggedValuesAndIntervals) {
  ZqMolKrigeResult result = Predict();
  ZqKrigeReportOptions options = Options();
  options.SetResponseName("IC50");
  options.SetShowConfidence(true);
  ZqImage logged(500, 400);
  ASSERT_TRUE(ZqKrigeRenderDistribution(logged, result, options));
  const double mu = result.GetResponse();
  const double half = 1.96 * std::sqrt(result.GetVariance());
  // The distribution's interval is separated by ", ".
  EXPECT_EQ(Texts(logged)[0], "IC50 " + Printf("%.3f", mu) + " [" + Printf("%.3f", mu - half) + ", " +
                                  Printf("%.3f", mu + half) + "]");

  // Unlogged, each number gets the format of its own size: 10^7.4 has more
  // digits than four figures need, so none after the point.
  options.SetUnlog(true);
  ZqImage unlogged(500, 400);
  ASSERT_TRUE(ZqKrigeRenderDistribution(unlogged, result, options));
  const double low = std::pow(10.0, mu - half);
  ASSERT_LT(low, 1e7);
  ASSERT_GT(low, 1e5);
  const std::vector<std::string> texts = Texts(unlogged);
  EXPECT_EQ(texts[0], "IC50 " + Printf("%.0f", std::pow(10.0, mu)) + " [" + Printf("%.0f", low) + ", " +
                          Printf("%.0f", std::pow(10.0, mu + half)) + "]");
  // The smallest training value, 10^5, is the first tick.
  EXPECT_EQ(texts[1], "100000");

  // The training panel's intervals come from the measurement noise and use
  // "," alone.
  ZqImage training(300, 400);
  options.SetUnlog(false);
  ASSERT_TRUE(ZqKrigeRenderTraining(training, result, options, 1, 1));
  const unsigned int first = ByWeight(result)[0];
  const double r = result.GetElementResponse(first);
  const double noise = 1.96 * std::sqrt(ZqGetExperimentalVariance(result.GetVariogram()));
  ASSERT_GT(noise, 0.0);
  EXPECT_EQ(Texts(training)[1], "IC50 " + Printf("%.3f", r) + " [" + Printf("%.3f", r - noise) + "," +
                                    Printf("%.3f", r + noise) + "]");
}

TEST_F(KrigeReport, PropertiesThatDoNotFitFallAwayFromTheEndWithOneWarning) {
  ZqMolKrigeResult result = Predict();
  ZqKrigeReportOptions options = Options();
  options.SetShowKrigeDetails(false);
  std::vector<std::string> names;
  for (int i = 0; i < 60; ++i) {
    names.push_back("Property number " + std::to_string(i));
    options.PushSDProperty("ACTIVITY", names.back());
  }
  ZqImage page(500, 700);
  Corvane::ZqScopedThrowCapture capture;
  ASSERT_TRUE(ZqKrigeRenderReport(page, result, Query(), options, 0, 0));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning),
            std::vector<std::string>{"ZqKrigeRenderReport, Not enough space to render all sd/data, skipping some"});
  // The names shown are the first ones, in order, and not all of them.
  std::vector<std::string> shown;
  for (const std::string& text : Texts(page)) {
    if (text.rfind(" Property number ", 0) == 0 || text.rfind("Property number ", 0) == 0) {
      shown.push_back(text.substr(text.find('P')));
    }
  }
  ASSERT_FALSE(shown.empty());
  ASSERT_LT(shown.size(), names.size());
  EXPECT_TRUE(std::equal(shown.begin(), shown.end(), names.begin()));
  EXPECT_EQ(Count(Texts(page), "Properties"), 1u);

  // A few fit at once, without a warning.
  ZqKrigeReportOptions few = Options();
  few.PushSDProperty("ACTIVITY", "Measured");
  few.PushSDProperty("NAME", "Name");
  Corvane::ZqScopedThrowCapture quiet;
  ZqImage roomy(800, 800);
  ASSERT_TRUE(ZqKrigeRenderReport(roomy, result, Query(), few, 0, 0));
  EXPECT_TRUE(quiet.Texts(Corvane::ZqThrowLevel::Warning).empty());
}

// ------------------------------------------------------------ files

TEST_F(KrigeReport, FilesInEachFormat) {
  ZqMolKrigeResult result = Predict();
  const ZqKrigeReportOptions options = Options();
  const std::string png = Path("report.png");
  ASSERT_TRUE(ZqKrigeRenderReport(png, result, Query(), options));
  PngPixels pixels(png);
  ASSERT_TRUE(pixels.Read());
  EXPECT_EQ(pixels.Width(), 800);
  EXPECT_EQ(pixels.Height(), 800);
  // The legend's discs are the contribution colours exactly.
  int blue = 0, red = 0, white = 0;
  for (int y = 0; y < 800; ++y) {
    for (int x = 0; x < 800; ++x) {
      const std::uint32_t p = pixels.At(x, y);
      blue += p == 0x0000FF;
      red += p == 0xFF0000;
      white += p == 0xFFFFFF;
    }
  }
  EXPECT_GT(blue, 50);
  EXPECT_GT(red, 50);
  EXPECT_GT(white, 800 * 800 / 2);

  const std::string svg = Path("report.svg");
  ASSERT_TRUE(ZqKrigeRenderReport(svg, result, Query(), options));
  const std::string parse = "/usr/bin/python3 -c 'import sys, xml.dom.minidom; xml.dom.minidom.parse(sys.argv[1])' " + svg;
  EXPECT_EQ(std::system(parse.c_str()), 0) << "the SVG is not well-formed XML";

  // The formats and the warnings of files that cannot be written are
  // ZqWriteImage's (lineart_test.cc); the report passes its failures on.
  Corvane::ZqScopedThrowCapture capture;
  EXPECT_FALSE(ZqKrigeRenderReport(Path("report.bmp"), result, Query(), options));
  EXPECT_FALSE(ZqKrigeRenderReport("/nonexistent-dir/report.png", result, Query(), options));
  EXPECT_EQ(capture.Texts(Corvane::ZqThrowLevel::Warning).size(), 2u);
}

}  // namespace
}  // namespace Varimo
