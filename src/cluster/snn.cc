#include "varimo/cluster/snn.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <map>
#include <string>

#include "varimo/platform/corvane/bit_vector.h"
#include "varimo/platform/corvane/error_handler.h"
#include "varimo/platform/corvane/output_sink.h"

namespace Varimo {

namespace {

using Lists = std::vector<std::vector<unsigned int>>;

// The list of item j, or an empty one for an index with no list.
const std::vector<unsigned int>& ListOf(const Lists& lists, unsigned int j) {
  static const std::vector<unsigned int> kNone;
  return j < lists.size() ? lists[j] : kNone;
}

// Links every item to its mutual neighbours. False when a bit vector could
// not hold an index (already reported by the bit vector).
bool BuildLinks(const Lists& lists, std::set<ZqNNStrength>& strengths, std::vector<unsigned int>& noise) {
  Corvane::ZqBitVector marked;
  for (std::size_t item = 0; item < lists.size(); ++item) {
    const unsigned int i = static_cast<unsigned int>(item);
    const std::vector<unsigned int>& list = lists[item];
    for (const unsigned int m : list) {
      if (!marked.SetBitOn(m)) return false;
    }
    ZqNNStrength record(i);
    // The search lines of one item go out in one write: a write per line
    // would cost more than the search.
    std::string searchLines;
    for (const unsigned int j : list) {
      if (j == i) continue;
      searchLines += "slow unsorted search of size nn\n";
      const std::vector<unsigned int>& other = ListOf(lists, j);
      if (std::find(other.begin(), other.end(), i) == other.end()) continue;
      unsigned int shared = 0;
      for (const unsigned int m : other) shared += marked.IsBitOn(m) ? 1u : 0u;
      record.Add(ZqStrValue(j, shared));
    }
    Corvane::ZqPrint(Corvane::ZqOutputStream::Err, searchLines);
    // Only the members were set, so clearing them is cheaper than a full sweep.
    for (const unsigned int m : list) marked.SetBitOff(m);
    if (record.GetStrCt() == 0) {
      noise.push_back(i);
    } else {
      strengths.insert(std::move(record));
    }
  }
  return true;
}

const ZqNNStrength* FindRecord(const std::set<ZqNNStrength>& strengths, unsigned int item) {
  const auto found = strengths.find(ZqNNStrength(item));
  return found == strengths.end() ? nullptr : &*found;
}

// Grows each cluster by the unassigned items that one of its members links
// to strongly enough. Returns the items left in no cluster and not noise, or
// -1 when the bit vector could not be made.
long LabelClusters(std::vector<ZqSNNCluster>& clusters, const std::set<ZqNNStrength>& strengths,
                   const std::vector<unsigned int>& noise, unsigned long n, unsigned int label) {
  Corvane::ZqBitVector open(n);
  if (open.GetSize() != n) return -1;
  for (unsigned long k = 0; k < n; ++k) open.SetBitOn(k);
  // Items past n (named by lists beyond the item count) have no bit here.
  for (const ZqSNNCluster& cluster : clusters) {
    for (const unsigned int m : cluster) {
      if (m < n) open.SetBitOff(m);
    }
  }
  for (const unsigned int m : noise) {
    if (m < n) open.SetBitOff(m);
  }

  for (ZqSNNCluster& cluster : clusters) {
    // One pass over the members as they stand; those added now are not walked.
    std::vector<unsigned int> additions;
    for (const unsigned int member : cluster) {
      const ZqNNStrength* record = FindRecord(strengths, member);
      if (record == nullptr) continue;
      for (Corvane::ZqIter<const ZqStrValue> link = record->GetValues(); link; ++link) {
        const unsigned int j = link->first;
        if (j < n && open.IsBitOn(j) && link->second > label) {
          open.SetBitOff(j);
          additions.push_back(j);
        }
      }
    }
    cluster.insert(cluster.end(), additions.begin(), additions.end());
  }
  return static_cast<long>(open.CountBitsOn());
}

}  // namespace

bool ZqMergeClusters(std::vector<ZqSNNCluster>& clusters, const std::set<ZqNNStrength>& strengthSet,
                     const std::vector<unsigned int>& noise, unsigned long n, unsigned int merge) {
  // Indices may run past n when lists name items beyond it; number them too.
  unsigned long size = n;
  for (const ZqSNNCluster& cluster : clusters) {
    for (const unsigned int m : cluster) size = std::max<unsigned long>(size, m + 1ul);
  }
  for (const ZqNNStrength& record : strengthSet) {
    for (Corvane::ZqIter<const ZqStrValue> link = record.GetValues(); link; ++link) {
      size = std::max<unsigned long>(size, link->first + 1ul);
    }
  }
  std::vector<unsigned int> number(size, 0);
  std::vector<char> isNoise(size, 0), isHead(size, 0);
  for (const unsigned int m : noise) {
    if (m < size) isNoise[m] = 1;
  }
  for (const ZqSNNCluster& cluster : clusters) {
    if (!cluster.empty()) isHead[cluster.front()] = 1;
  }

  bool ok = true;
  unsigned int next = 1;
  for (const ZqSNNCluster& cluster : clusters) {
    if (cluster.empty()) continue;
    const unsigned int h = cluster.front();
    if (number[h] == 0) number[h] = next++;
    const ZqNNStrength* record = FindRecord(strengthSet, h);
    if (record == nullptr) continue;
    for (Corvane::ZqIter<const ZqStrValue> link = record->GetValues(); link; ++link) {
      const unsigned int j = link->first;
      if (link->second <= merge || isNoise[j] || number[j] == number[h]) continue;
      if (number[j] != 0) {
        const unsigned int old = number[j];
        bool found = false;
        for (const ZqSNNCluster& other : clusters) {
          if (!other.empty() && number[other.front()] == old) {
            number[other.front()] = number[h];
            found = true;
          }
        }
        if (!found) {
          Corvane::ZqThrow.Warning("failed to find merge cluster %d", static_cast<int>(old));
          ok = false;
        }
      } else if (isHead[j]) {
        number[j] = number[h];
      }
    }
  }

  // One cluster per number, in the order of the first cluster of each.
  std::map<unsigned int, std::size_t> clusterOfHead;
  for (std::size_t c = 0; c < clusters.size(); ++c) {
    if (!clusters[c].empty()) clusterOfHead.emplace(clusters[c].front(), c);
  }
  std::vector<unsigned int> order;
  std::map<unsigned int, std::vector<unsigned int>> headsOfNumber;
  for (const ZqSNNCluster& cluster : clusters) {
    if (cluster.empty()) continue;
    const unsigned int num = number[cluster.front()];
    if (headsOfNumber.find(num) == headsOfNumber.end()) order.push_back(num);
    headsOfNumber[num].push_back(cluster.front());
  }
  std::vector<ZqSNNCluster> merged;
  merged.reserve(order.size());
  for (const unsigned int num : order) {
    ZqSNNCluster joined;
    for (const unsigned int head : headsOfNumber[num]) {
      const auto found = clusterOfHead.find(head);
      if (found == clusterOfHead.end()) {
        Corvane::ZqThrow.Warning("unable to find cluster head %d in merge clusters.", static_cast<int>(head));
        ok = false;
        continue;
      }
      const ZqSNNCluster& part = clusters[found->second];
      joined.insert(joined.end(), part.begin(), part.end());
    }
    merged.push_back(std::move(joined));
  }
  clusters = std::move(merged);
  return ok;
}

int ZqGetSNNCluster(std::vector<ZqSNNCluster>& clusters, std::vector<unsigned int>& noise, unsigned long numItems,
                    const std::vector<std::vector<unsigned int>>& nearNeighbors, const ZqSNNParameters& params,
                    bool sortLists) {
  noise.clear();
  Lists sorted;
  if (sortLists) {
    sorted = nearNeighbors;
    for (std::vector<unsigned int>& list : sorted) std::sort(list.begin(), list.end());
  }
  const Lists& lists = sortLists ? sorted : nearNeighbors;

  std::set<ZqNNStrength> strengths;
  if (!BuildLinks(lists, strengths, noise)) return 0;
  if (strengths.empty()) {
    Corvane::ZqThrow.Warning("Failed to find any connected near-neighbors");
    return 0;
  }

  clusters.clear();
  for (const ZqNNStrength& record : strengths) {
    const unsigned int links = record.GetStrCt();
    // Independent tests: with noise above topic an item can be both.
    if (links < params.noise) noise.push_back(record.GetSmallIdx());
    if (links >= params.topic) clusters.push_back(ZqSNNCluster{record.GetSmallIdx()});
  }
  if (clusters.empty()) {
    Corvane::ZqThrow.Warning("Failed to identify representative clusters & noise.");
    return 0;
  }

  if (!ZqMergeClusters(clusters, strengths, noise, numItems, params.merge)) return 0;

  const long singletons = LabelClusters(clusters, strengths, noise, numItems, params.label);
  if (singletons < 0) return 0;
  Corvane::ZqThrow.Info("Singleton Ct = %d, Noise Ct = %d", static_cast<int>(singletons),
                        static_cast<int>(noise.size()));
  return 1;
}

namespace {

ZqSNNParameters ParametersFor(unsigned long numItems) {
  const int count = static_cast<int>(static_cast<double>(numItems) * 0.1);
  ZqSNNParameters params;
  params.nbrCt = static_cast<unsigned int>(std::clamp(count, 6, 30));
  params.topic = static_cast<unsigned int>(0.75 * params.nbrCt);
  params.noise = static_cast<unsigned int>(0.5 * params.nbrCt);
  params.merge = static_cast<unsigned int>(0.63 * params.nbrCt);
  params.label = static_cast<unsigned int>(0.53 * params.nbrCt);
  return params;
}

}  // namespace

int ZqGetSNNCluster(std::vector<ZqSNNCluster>& clusters, unsigned long numItems, ZqSimInfo& info) {
  const ZqSNNParameters params = ParametersFor(numItems);
  std::ostringstream lines;
  lines << "nbrCt = " << params.nbrCt << "\n"
        << "topic = " << params.topic << "\n"
        << "noise = " << params.noise << "\n"
        << "merge = " << params.merge << "\n"
        << "label = " << params.label << "\n";

  Lists lists;
  const unsigned long n = info.n;
  const bool usable = n == numItems && n > 0 && n <= info.sims.size() / n;
  if (usable) {
    lists.resize(n);
    std::vector<std::pair<double, unsigned int>> row(n);
    const std::size_t keep = std::min<std::size_t>(params.nbrCt, n);
    for (unsigned long i = 0; i < n; ++i) {
      for (unsigned long j = 0; j < n; ++j) {
        row[j] = {info.sims[n * std::min(i, j) + std::max(i, j)], static_cast<unsigned int>(j)};
      }
      std::nth_element(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(keep), row.end(), ZqGreaterSim());
      lines << i << "::";
      for (std::size_t k = 0; k < keep; ++k) {
        lines << " (" << row[k].first << ", " << row[k].second << ")";
        lists[i].push_back(row[k].second);
      }
      lines << "\n";
      std::sort(lists[i].begin(), lists[i].end());
    }
  }
  lines << "EndPrint\n";
  Corvane::ZqPrint(Corvane::ZqOutputStream::Err, lines.str());
  if (lists.empty()) {
    Corvane::ZqThrow.Warning("Failed to identify near-neghbors");
    return 0;
  }

  std::vector<unsigned int> noise;
  const int found = ZqGetSNNCluster(clusters, noise, numItems, lists, params, true);
  if (found == 0) Corvane::ZqThrow.Warning("Failed to generate cluster from NN list.");
  return found;
}

}  // namespace Varimo
