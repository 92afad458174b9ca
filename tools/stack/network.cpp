#include "tools/stack/network.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

#include "tools/stack/triangles.hpp"

namespace varnoth::tools {

namespace {

constexpr double LONGEST = 5 * 365.25;  // days

std::vector<STACK_PAIR> Triangulated(const SCENE_STACK& stack, std::size_t reference) {
  std::vector<PLANE_POINT> points;
  for (std::size_t i = 0; i < stack.scenes.size(); ++i) {
    // In parts of the lengths at which no coherence is left, so that both count alike.
    points.push_back({static_cast<double>(DaysOf(stack, {reference, i})) / LONGEST,
                      BaselineOf(stack, {reference, i}).perpendicular / stack.critical_baseline});
  }
  std::vector<STACK_PAIR> pairs;
  for (const auto& [a, b] : TriangleEdges(points)) pairs.push_back({a, b});
  return pairs;
}

std::vector<STACK_PAIR> Candidates(const SCENE_STACK& stack, std::size_t reference,
                                   const NETWORK_REQUEST& request) {
  const std::size_t count = stack.scenes.size();
  if (request.kind == NETWORK::DELAUNAY) return Triangulated(stack, reference);
  std::vector<STACK_PAIR> pairs;
  if (request.kind == NETWORK::STAR) {
    for (std::size_t i = 0; i < count; ++i) {
      if (i != reference) pairs.push_back({reference, i});
    }
    return pairs;
  }
  const std::size_t next =
      request.kind == NETWORK::ALL ? count : static_cast<std::size_t>(request.nearest);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t stop = std::min(count, i + 1 + next);
    for (std::size_t j = i + 1; j < stop; ++j) pairs.push_back({i, j});
  }
  return pairs;
}

}  // namespace

double ModelledCoherence(const SCENE_STACK& stack, const STACK_PAIR& pair) {
  const auto left = [](double part) { return std::max(0.0, 1 - std::abs(part)); };
  return left(BaselineOf(stack, pair).perpendicular / stack.critical_baseline) *
         left(static_cast<double>(DaysOf(stack, pair)) / LONGEST);
}

std::size_t BestReference(const SCENE_STACK& stack) {
  std::size_t best = 0;
  double most = -1.0;
  for (std::size_t i = 0; i < stack.scenes.size(); ++i) {
    double sum = 0.0;
    for (std::size_t j = 0; j < stack.scenes.size(); ++j) sum += ModelledCoherence(stack, {i, j});
    if (sum > most) {
      best = i;
      most = sum;
    }
  }
  return best;
}

std::vector<STACK_PAIR> MakeNetwork(const SCENE_STACK& stack, std::size_t reference,
                                    const NETWORK_REQUEST& request) {
  std::vector<STACK_PAIR> pairs = Candidates(stack, reference, request);
  std::erase_if(pairs, [&](const STACK_PAIR& pair) {
    const auto days = static_cast<double>(std::abs(DaysOf(stack, pair)));
    return (request.max_days && days > *request.max_days) ||
           (request.max_baseline &&
            std::abs(BaselineOf(stack, pair).perpendicular) > *request.max_baseline);
  });
  return pairs;
}

std::vector<std::vector<std::size_t>> PartsOf(std::size_t scenes,
                                              const std::vector<STACK_PAIR>& pairs) {
  std::vector<std::size_t> root(scenes);
  std::iota(root.begin(), root.end(), std::size_t{0});
  const auto find = [&](std::size_t i) {
    while (root[i] != i) i = root[i] = root[root[i]];
    return i;
  };
  for (const STACK_PAIR& pair : pairs) {
    const std::size_t a = find(pair.master);
    const std::size_t b = find(pair.slave);
    root[std::max(a, b)] = std::min(a, b);
  }
  std::vector<std::vector<std::size_t>> of_root(scenes);
  for (std::size_t i = 0; i < scenes; ++i) of_root[find(i)].push_back(i);
  std::erase_if(of_root, [](const auto& part) { return part.empty(); });
  return of_root;
}

BASELINE BaselineOf(const SCENE_STACK& stack, const STACK_PAIR& pair) {
  return BaselineOf(stack.scenes[pair.master].satellite, stack.scenes[pair.slave].satellite,
                    stack.point);
}

std::int64_t DaysOf(const SCENE_STACK& stack, const STACK_PAIR& pair) {
  return stack.scenes[pair.slave].day - stack.scenes[pair.master].day;
}

}  // namespace varnoth::tools
