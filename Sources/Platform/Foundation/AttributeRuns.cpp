#include "Platform/Foundation/AttributeRuns.h"

#include <algorithm>
#include <utility>

namespace kelvane {
namespace {

constexpr std::size_t chunkSize = 128;
constexpr std::size_t largestChunk = 2 * chunkSize;

bool isSame(const Ref<NSDictionary>& a, const Ref<NSDictionary>& b) { return a == b || a->isEqual(*b); }

std::ptrdiff_t offset(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

}  // namespace

std::size_t AttributeRuns::count() const {
  std::size_t count = 0;
  for (const Chunk& chunk : myChunks) count += chunk.entries.size();
  return count;
}

// The chunk that covers `index`; the last one for the end of the text. There must be one.
std::size_t AttributeRuns::chunkAt(std::size_t index) const {
  const auto behind = std::upper_bound(myChunks.begin() + 1, myChunks.end(), index,
                                       [](std::size_t place, const Chunk& chunk) { return place < chunk.start; });
  return static_cast<std::size_t>(behind - myChunks.begin()) - 1;
}

AttributeRuns::Iterator AttributeRuns::find(std::size_t index) const {
  const std::size_t chunk = chunkAt(index);
  const auto& entries = myChunks[chunk].entries;
  const auto entry = std::upper_bound(entries.begin(), entries.end(), index - myChunks[chunk].start,
                                      [](std::size_t place, const Entry& run) { return place < run.end; });
  return {this, chunk, static_cast<std::size_t>(entry - entries.begin())};
}

// Moves the chunks behind, and the end of the whole; the distance wraps where it is negative.
void AttributeRuns::shiftBehind(std::size_t chunk, std::size_t distance) {
  for (std::size_t i = chunk + 1; i < myChunks.size(); ++i) myChunks[i].start += distance;
  myLength += distance;
}

void AttributeRuns::resize(std::size_t index, std::size_t removed, std::size_t added) {
  const Iterator place = find(index);
  auto& entries = myChunks[place.myChunk].entries;
  for (std::size_t i = place.myEntry; i < entries.size(); ++i) entries[i].end += added - removed;
  shiftBehind(place.myChunk, added - removed);
}

void AttributeRuns::append(std::size_t length, Ref<NSDictionary> attributes) {
  if (length == 0) return;
  const std::size_t start = myLength;
  myLength += length;
  if (!myChunks.empty()) {
    Chunk& chunk = myChunks.back();
    Entry& last = chunk.entries.back();
    if (isSame(last.attributes, attributes)) {
      last.end += length;
      return;
    }
    if (chunk.entries.size() < largestChunk) {
      chunk.entries.push_back({start + length - chunk.start, std::move(attributes)});
      return;
    }
  }
  Chunk& chunk = myChunks.emplace_back();
  chunk.start = start;
  // Most texts have a few runs; one that has more is likely to get many.
  if (myChunks.size() > 1) chunk.entries.reserve(largestChunk);
  chunk.entries.push_back({length, std::move(attributes)});
}

void AttributeRuns::add(std::vector<Piece>& pieces, std::size_t length, Ref<NSDictionary>&& attributes) {
  if (length == 0) return;
  if (!pieces.empty() && isSame(pieces.back().attributes, attributes))
    pieces.back().length += length;
  else
    pieces.push_back({length, std::move(attributes)});
}

// `pieces` in chunks of about `chunkSize`, the first of which begins at `start`.
std::vector<AttributeRuns::Chunk> AttributeRuns::chunked(std::size_t start, std::vector<Piece>&& pieces) const {
  const std::size_t chunks =
      pieces.size() <= largestChunk ? std::min<std::size_t>(pieces.size(), 1) : pieces.size() / chunkSize;
  std::vector<Chunk> result(chunks);
  for (std::size_t i = 0, next = 0; i < chunks; ++i) {
    const std::size_t behind = pieces.size() * (i + 1) / chunks;
    result[i].start = start;
    result[i].entries.reserve(behind - next);
    std::size_t end = 0;
    for (; next < behind; ++next) {
      end += pieces[next].length;
      result[i].entries.push_back({end, std::move(pieces[next].attributes)});
    }
    start += end;
  }
  return result;
}

// The runs of the chunks from `first` to `last`, taken out of them, with `pieces` in the place of what covers `range`.
std::vector<AttributeRuns::Piece> AttributeRuns::takeChanged(std::size_t first, std::size_t last, NSRange range,
                                                             std::vector<Piece>& pieces) {
  std::vector<Piece> runs;
  runs.reserve((last - first + 1) * largestChunk / 2 + pieces.size() + 2);
  // Of the runs that were there, only those on either side of the change can have become equal.
  bool isInserted = false;
  bool isSeam = false;
  const auto insert = [&] {
    for (Piece& piece : pieces) add(runs, piece.length, std::move(piece.attributes));
    isInserted = isSeam = true;
  };
  const auto keep = [&](std::size_t length, Ref<NSDictionary>&& attributes) {
    if (std::exchange(isSeam, false))
      add(runs, length, std::move(attributes));
    else
      runs.push_back({length, std::move(attributes)});
  };
  for (std::size_t i = first; i <= last; ++i) {
    std::size_t start = myChunks[i].start;
    for (Entry& entry : myChunks[i].entries) {
      const std::size_t end = myChunks[i].start + entry.end;
      if (end > range.location && !isInserted) {
        if (start < range.location) keep(range.location - start, Ref<NSDictionary>(entry.attributes));
        insert();
      }
      if (end <= range.location)
        keep(end - start, std::move(entry.attributes));
      else if (end > range.end())
        keep(end - std::max(start, range.end()), std::move(entry.attributes));
      start = end;
    }
  }
  if (!isInserted) insert();
  return runs;
}

// The chunks that the change touches, with a neighbour on either side, are taken apart, and what comes of them is put
// into chunks anew: no chunk stays small for long, and equal runs find each other across all seams.
void AttributeRuns::replace(NSRange range, std::vector<Piece> pieces) {
  if (myChunks.empty()) {
    for (Piece& piece : pieces) append(piece.length, std::move(piece.attributes));
    return;
  }
  std::size_t first = chunkAt(range.location);
  std::size_t last = range.length == 0 ? first : chunkAt(range.end() - 1);
  if (first > 0 && (range.location == myChunks[first].start || myChunks[first].entries.size() < chunkSize / 2)) --first;
  if (last + 1 < myChunks.size() &&
      (range.end() == myChunks[last + 1].start || myChunks[last].entries.size() < chunkSize / 2))
    ++last;

  std::vector<Piece> runs = takeChanged(first, last, range, pieces);
  std::size_t added = 0;
  for (const Piece& piece : pieces) added += piece.length;
  shiftBehind(last, added - range.length);

  std::vector<Chunk> chunks = chunked(myChunks[first].start, std::move(runs));
  const std::size_t kept = std::min(chunks.size(), last - first + 1);
  std::move(chunks.begin(), chunks.begin() + offset(kept), myChunks.begin() + offset(first));
  const auto behind = myChunks.erase(myChunks.begin() + offset(first + kept), myChunks.begin() + offset(last + 1));
  myChunks.insert(behind, std::make_move_iterator(chunks.begin() + offset(kept)),
                  std::make_move_iterator(chunks.end()));
}

bool operator==(const AttributeRuns& a, const AttributeRuns& b) {
  if (a.myLength != b.myLength) return false;
  auto other = b.begin();
  for (const AttributeRun run : a) {
    const AttributeRun theirs = *other;
    if (run.range != theirs.range || !isSame(run.attributes, theirs.attributes)) return false;
    ++other;
  }
  return true;
}

}  // namespace kelvane
