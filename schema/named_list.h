#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "foundation/linked_list.h"
#include "schema/name_index.h"
#include "schema/named.h"

namespace Brindle {

// A list of named elements that finds them by name: the first of that name, as
// a walk from the head would. The shortest lists are walked; up to TAGGED
// elements a tag for each tells which are worth a look; past that a tree does
// the work, so that names that come from outside in great numbers cost no
// quadratic time.
//
// The index grows by extendIndex(), never by a search: any number of threads
// may search a list that none changes. What it does not cover, be it for lack
// of memory, is walked. Names of elements must not be replaced.
template <class T>
class NamedList {
 public:
  using List = gs::LinkedList<T>;
  using Node = typename List::Node;

  NamedList() = default;
  // Copies all elements, or throws std::bad_alloc.
  NamedList(const NamedList& other) : elements(other.elements) {}
  NamedList(NamedList&& other) noexcept = default;
  NamedList& operator=(const NamedList& other) {
    return *this = NamedList(other);
  }
  NamedList& operator=(NamedList&& other) noexcept {
    index = std::move(other.index);
    elements = std::move(other.elements);
    return *this;
  }
  ~NamedList() = default;

  const List& list() const { return elements; }
  Node* head() { return elements.head; }

  // See gs::LinkedList::reserve().
  bool reserve(uint64 n) noexcept { return elements.reserve(n); }

  // Null, with the list unchanged, when there is no memory for the element. The
  // index does not cover it yet.
  T* append(T&& element) { return elements.append(std::move(element)); }

  // Makes the index cover all elements, if there are more than `walked`.
  void extendIndex(uint64 walked = WALKED) noexcept {
    if (elements.count <= walked || covered() == elements.count) return;
    try {
      startIndex();
      while (Node* node = firstUncovered()) cover(node);
    } catch (const std::bad_alloc&) {
      // The rest is walked until there is memory again.
    }
  }

  // Null if there is none.
  Node* find(const SafeString& name) {
    return const_cast<Node*>(std::as_const(*this).find(name));
  }
  const Node* find(const SafeString& name) const {
    if (name.data() == nullptr) return nullptr;
    // Whatever the index holds stands before the rest.
    if (const Node* hit = index ? findCovered(name) : nullptr) return hit;
    const Node* node = firstUncovered();
    while (node != nullptr && !(node->value.name.text() == name)) {
      node = node->next;
    }
    return node;
  }

  // Moves the first element of `other`, which has one, to the end.
  void takeFirst(NamedList& other) noexcept {
    other.index.reset();
    elements.takeFirst(other.elements);
  }
  // Removes `node`, which has to be one of this list.
  void remove(Node* node) {
    index.reset();
    elements.remove(node);
  }
  void clear() {
    index.reset();
    elements.clear();
  }

 private:
  static constexpr uint64 WALKED = 4;
  static constexpr uint64 TAGGED = 128;

  struct Index {
    std::vector<uint32> tags;  // of all covered elements, or none with a tree
    NameIndex tree;            // of the first element of each name
    Node* last = nullptr;      // the last element that is covered
    uint64 covered = 0;
  };

  static uint32 tagOf(const SafeString& name) {
    const auto* bytes = reinterpret_cast<const uint8*>(name.c_str());
    return nameTag(bytes, std::strlen(name.c_str()));
  }

  uint64 covered() const { return index ? index->covered : 0; }
  Node* firstUncovered() const {
    return covered() == 0 ? elements.head : index->last->next;
  }

  void startIndex() {
    const bool outgrown =
        index && !index->tags.empty() && elements.count > TAGGED;
    if (!index || outgrown) index = std::make_unique<Index>();
  }

  void cover(Node* node) {
    const SafeString& name = node->value.name;
    if (elements.count <= TAGGED) {
      if (index->tags.empty()) index->tags.reserve(TAGGED / 4);
      index->tags.push_back(tagOf(name));
    } else if (name.data() != nullptr) {
      // A name without a buffer equals none and is never looked up.
      index->tree.insert(name, node);
    }
    index->last = node;
    ++index->covered;
  }

  const Node* findCovered(const SafeString& name) const {
    if (index->tags.empty()) return static_cast<Node*>(index->tree.find(name));
    const uint32 tag = tagOf(name);
    const Node* node = elements.head;
    for (auto at = index->tags.begin();; ++at, node = node->next) {
      const auto match = std::find(at, index->tags.end(), tag);
      if (match == index->tags.end()) return nullptr;
      for (; at != match; ++at) node = node->next;
      if (node->value.name.text() == name) return node;
    }
  }

  List elements;
  std::unique_ptr<Index> index;
};

}  // namespace Brindle
