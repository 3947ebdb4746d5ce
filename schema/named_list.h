#pragma once

#include <cstring>
#include <memory>
#include <new>
#include <set>
#include <utility>

#include "foundation/linked_list.h"
#include "schema/named.h"

namespace Brindle {

// A list of named elements that finds them by name: the first of that name, as
// a walk from the head would. Short lists are walked; past LINEAR elements an
// index does the work, so that names that come from outside in great numbers
// cost no quadratic time. The index is ordered, not hashed: no choice of names
// degrades it.
//
// The index grows as elements are added, never by a search: any number of
// threads may search a list that none changes. Without memory for it the list
// is walked. Names of elements must not be replaced.
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

  // Null, with the list unchanged, when there is no memory for the element.
  T* append(T&& element) {
    T* added = elements.append(std::move(element));
    extendIndex();
    return added;
  }

  // Null if there is none.
  Node* find(const SafeString& name) {
    return const_cast<Node*>(std::as_const(*this).find(name));
  }
  const Node* find(const SafeString& name) const {
    if (name.data() == nullptr) return nullptr;
    // Whatever the index holds stands before the rest.
    if (index) {
      const auto hit = index->firsts.find(name);
      if (hit != index->firsts.end()) return *hit;
    }
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
    extendIndex();
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
  static constexpr uint64 LINEAR = 32;

  struct ByName {
    using is_transparent = void;
    static const char* text(const SafeString& name) { return name.c_str(); }
    static const char* text(const Node* node) {
      return node->value.name.c_str();
    }
    template <class A, class B>
    bool operator()(const A& a, const B& b) const {
      return std::strcmp(text(a), text(b)) < 0;
    }
  };
  struct Index {
    std::set<Node*, ByName> firsts;  // the first element of each name
    Node* last = nullptr;            // the last element that is covered
    uint64 covered = 0;
  };

  uint64 covered() const { return index ? index->covered : 0; }
  Node* firstUncovered() const {
    return covered() == 0 ? elements.head : index->last->next;
  }
  void extendIndex() noexcept {
    if (elements.count - covered() <= LINEAR) return;
    try {
      if (!index) index = std::make_unique<Index>();
      while (Node* node = firstUncovered()) {
        // A name without a buffer equals none and is never looked up.
        if (node->value.name.text().data() != nullptr) {
          index->firsts.insert(node);
        }
        index->last = node;
        ++index->covered;
      }
    } catch (const std::bad_alloc&) {
      // The rest is walked until there is memory again.
    }
  }

  List elements;
  std::unique_ptr<Index> index;
};

}  // namespace Brindle
