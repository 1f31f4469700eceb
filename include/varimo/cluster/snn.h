// Shared-nearest-neighbour clustering: density-based clusters from
// near-neighbour lists. Two items are linked when each lies in the other's
// list, and the strength of the link is the overlap of the two lists. Items
// with many links head clusters, items with few are noise, strongly linked
// heads merge, and the remaining items join a cluster through one strong link.
//
// Progress goes to the error stream of Corvane's output sink (one "slow
// unsorted search of size nn" line per neighbour examined, and the parameters
// and lists of the overload that works them out); failures are warnings through Corvane::ZqThrow with a
// return of 0, the outputs then holding what was reached.
//
// Cost: O(n k^2) for n lists of k items, plus O(n^2 log k) to build the lists
// from similarities.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "varimo/cluster/nn_strength.h"

namespace Varimo {

struct ZqSNNParameters {
  unsigned int nbrCt = 0;  // size of a near-neighbour list
  unsigned int topic = 0;  // links needed to head a cluster
  unsigned int noise = 0;  // links below which an item is noise
  unsigned int merge = 0;  // link strength above which two heads merge
  unsigned int label = 0;  // link strength above which an item joins a cluster
};

// Pairwise similarities of n items, the similarity of i and j at
// n min(i, j) + max(i, j) of `sims` (so n * n values, of which the upper
// triangle is read). Only the order of the similarities matters.
struct ZqSimInfo {
  unsigned long n = 0;
  std::vector<double> sims;
};

// Orders (similarity, item) pairs by greater similarity alone.
struct ZqGreaterSim {
  bool operator()(const std::pair<double, unsigned int>& a, const std::pair<double, unsigned int>& b) const {
    return a.first > b.first;
  }
};

// A cluster: item indices, its head first.
using ZqSNNCluster = std::vector<unsigned int>;

// Clusters `numItems` items from their near-neighbour lists (list i for item
// i; an item may list itself). With `sortLists` the lists are sorted copies,
// otherwise they are used as given. Fills `clusters` and `noise` (items with
// too few links); items in neither are singletons, counted in the closing
// "Singleton Ct = %d, Noise Ct = %d" report at Info level. A neighbour index
// with no list of its own is never a mutual neighbour. Non-zero on success.
int ZqGetSNNCluster(std::vector<ZqSNNCluster>& clusters, std::vector<unsigned int>& noise, unsigned long numItems,
                    const std::vector<std::vector<unsigned int>>& nearNeighbors, const ZqSNNParameters& params,
                    bool sortLists);

// Works out the parameters from the number of items and the lists from the
// similarities (each item's nbrCt most similar items, itself included), and
// clusters with them; the noise list is not handed out. Fails with "Failed to
// identify near-neghbors" when there are no items or `sims` is too short for
// `info.n` items, or when info.n differs from numItems.
int ZqGetSNNCluster(std::vector<ZqSNNCluster>& clusters, unsigned long numItems, ZqSimInfo& info);

// Merges the clusters whose heads share a link stronger than `merge`, unless
// the neighbour is noise. The merged cluster keeps the first head and the
// members of each merged cluster in cluster order. False, with a warning,
// when the cluster numbering turns out inconsistent.
bool ZqMergeClusters(std::vector<ZqSNNCluster>& clusters, const std::set<ZqNNStrength>& strengthSet,
                     const std::vector<unsigned int>& noise, unsigned long n, unsigned int merge);

}  // namespace Varimo
