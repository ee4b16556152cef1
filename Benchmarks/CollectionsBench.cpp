// The small collections against the standard containers that one would write in their place.

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <numeric>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "Collections/QNBucketDictionary.h"
#include "Collections/QNIndexedObjectPool.h"
#include "Collections/QNRandomArray.h"
#include "Collections/QNStack.h"
#include "Geo/QNRectTree.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QHash>
#include <QList>
#include <QString>
#endif

namespace kelvane::bench {
namespace {

// No slower than a plain container but for a tenth.
constexpr double asFast = 1 / 1.1;

// Puts all elements on and takes them off again, a hundred at a time; the answer is how many there were.
template <class Push, class Pop>
std::size_t upAndDown(const std::vector<Ref<NSObject>>& elements, Push push, Pop pop) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < elements.size(); i += 100) {
    for (std::size_t j = i; j < i + 100; ++j) push(elements[j]);
    for (std::size_t j = i; j < i + 100; ++j) count += pop() == elements[i];
  }
  return count;
}

std::vector<Ref<NSObject>> texts(std::size_t count) {
  std::vector<Ref<NSObject>> texts;
  for (std::size_t i = 0; i < count; ++i) texts.push_back(box(format(u"element %lu", i)));
  return texts;
}

const Subject stacks([] {
  Row("push: and pop")
      .ours([elements = texts(1000), stack = std::make_shared<QNStack<>>()] {
        return upAndDown(
            elements, [&](const auto& element) { stack->push(element); }, [&] { return stack->pop(); });
      })
      .peer("std::vector",
            [elements = texts(1000), stack = std::make_shared<std::vector<Ref<NSObject>>>()] {
              const auto pop = [&] {
                const Ref<NSObject> top = std::move(stack->back());
                stack->pop_back();
                return top;
              };
              return upAndDown(
                  elements, [&](const auto& element) { stack->push_back(element); }, pop);
            })
      .reach(asFast)
      .per("element", 1000);

  for (const std::size_t count : {std::size_t{20}, std::size_t{10000}}) {
    const auto stack = std::make_shared<QNStack<>>();
    for (const auto& element : texts(count)) stack->push(element);
    // Equal to the last one that is looked at.
    const auto known = box(format(u"element %lu", count - 1));
    Row("pushUnique: at " + std::to_string(count))
        .ours([stack, known] {
          stack->pushUnique(known);
          return stack->count();
        })
        .peer("std::find_if",
              [elements = stack->stack(), known]() mutable {
                const auto isKnown = [&](const auto& element) { return element->isEqual(*known); };
                if (std::none_of(elements.begin(), elements.end(), isKnown)) elements.push_back(known);
                return elements.size();
              })
        .reach(asFast);
  }
});

struct Track {
  explicit Track(std::uint64_t theNumber) : number(theNumber) {}
  std::uint64_t number;
};

const Subject pools([] {
  for (const std::size_t count : {std::size_t{100}, std::size_t{10000}}) {
    using Tracks = std::vector<std::shared_ptr<Track>>;
    // Pooled by identity, for quick making.
    const auto pool = std::make_shared<QNIndexedObjectPool<Track*>>([](const Track* track) { return track->number; });
    const auto tracks = std::make_shared<Tracks>();
    for (std::size_t i = 0; i < count; ++i) {
      tracks->push_back(std::make_shared<Track>(i));
      pool->addObject(tracks->back().get());
    }
    Row("objectById: at " + std::to_string(count))
        .ours([pool, tracks, count] { return pool->objectById(count - 1)->number; })
        .peer("std::find_if",
              [tracks, count, mutex = std::make_shared<std::recursive_mutex>()] {
                const std::lock_guard lock(*mutex);
                const auto isWanted = [&](const auto& track) { return track->number == count - 1; };
                return (*std::find_if(tracks->begin(), tracks->end(), isWanted))->number;
              })
        .reach(asFast);
  }
});

const Subject buckets([] {
  constexpr std::size_t count = 1'000'000;
  static const std::vector<Text> keys = [] {
    std::vector<Text> made;
    for (std::size_t i = 0; i < 1000; ++i) made.push_back(format(u"bucket %lu", i));
    return made;
  }();
  const auto key = [](std::size_t i) -> const Text& { return keys[i * 7919 % 1000]; };
  Row("a million objects into 1000 buckets")
      .ours(
          [key] {
            auto dictionary = std::make_unique<QNBucketDictionary<Text, std::size_t>>();
            for (std::size_t i = 0; i < count; ++i) dictionary->putObject(i, key(i));
            return dictionary;
          },
          [key](const auto& dictionary) { return dictionary->objectsFromsBucketWithKey(key(5)); })
      .peer(
          "std::unordered_map",
          [key] {
            auto dictionary = std::make_unique<std::unordered_map<Text, std::vector<std::size_t>>>();
            for (std::size_t i = 0; i < count; ++i) (*dictionary)[key(i)].push_back(i);
            return dictionary;
          },
          [key](const auto& dictionary) { return dictionary->at(key(5)); })
#ifdef BENCH_QT
      .peer(
          "Qt",
          [qtKeys =
               [] {
                 QList<QString> list;
                 for (const Text& text : keys) list.append(QString::fromStdU16String(text));
                 return list;
               }()] {
            auto dictionary = std::make_unique<QHash<QString, QList<std::size_t>>>();
            for (std::size_t i = 0; i < count; ++i) (*dictionary)[qtKeys[qsizetype(i * 7919 % 1000)]].append(i);
            return dictionary;
          },
          [key](const auto& dictionary) { return dictionary->value(QString::fromStdU16String(key(5))); })
#endif
      .reach(asFast)
      .per("object", count);
});

const Subject draws([] {
  constexpr std::size_t count = 100'000;
  // What is drawn differs, but not what it comes to.
  const auto sum = [](const std::vector<int>& drawn) { return std::accumulate(drawn.begin(), drawn.end(), 0LL); };
  std::vector<int> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0);
  Row("randomObjects: of 100000")
      .ours([array = QNRandomArray<int>(numbers)] { return array.randomObjects(count); }, sum)
      .peer(
          "std::shuffle",
          [numbers, random = std::mt19937()]() mutable {
            std::vector<int> drawn = numbers;
            std::shuffle(drawn.begin(), drawn.end(), random);
            return drawn;
          },
          sum)
      .per("object", count);
});

const Subject trees([] {
  for (const std::size_t count : {std::size_t{1000}, std::size_t{10000}}) {
    using Tree = QNRectTree<Text, int>;
    std::vector<Text> keys;
    for (std::size_t i = 0; i < count; ++i) keys.push_back(format(u"/pictures/%05lu.png", i));
    std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    // Each node on the way measures its subtree, so a tree of ten times the keys takes ten times as long for each.
    Row("insertNode: up to " + std::to_string(count))
        .ours(
            [keys] {
              auto tree = std::make_unique<Tree>();
              for (const Text& key : keys) {
                const auto node = Tree::Node::RectTreeNode();
                node->setKey(key);
                tree->insertNode(node);
              }
              return tree;
            },
            [](const auto& tree) { return tree->rootNode() != nullptr; })
        .per("key", count);
  }
});

}  // namespace
}  // namespace kelvane::bench
