// Points of a plot: what the charting code draws as one line or one set of
// markers, with an optional name for the legend.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace Numarc {

class ZqDataPoint {
 public:
  ZqDataPoint(double x, double y) : x_(x), y_(y) {}

  double GetX() const { return x_; }
  double GetY() const { return y_; }

  bool operator==(const ZqDataPoint& other) const = default;

 private:
  double x_;
  double y_;
};

// Points in the order added; nothing is sorted or dropped, NaN coordinates
// included. The name is empty until set.
class ZqDataSeries {
 public:
  // Removes the points; the name stays.
  void Clear() { points_.clear(); }
  void SetPoints(std::vector<ZqDataPoint> points) { points_ = std::move(points); }
  void AddPoint(const ZqDataPoint& point) { points_.push_back(point); }

  const std::vector<ZqDataPoint>& GetPoints() const { return points_; }
  std::size_t GetNumPoints() const { return points_.size(); }

  void SetName(std::string name) { name_ = std::move(name); }
  const std::string& GetName() const { return name_; }

 private:
  std::vector<ZqDataPoint> points_;
  std::string name_;
};

}  // namespace Numarc
