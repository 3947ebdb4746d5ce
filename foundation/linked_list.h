#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <utility>

#include "foundation/types.h"

namespace gs {

// A doubly linked list that owns its nodes and keeps insertion order: elements
// are appended at the tail, searched from the head, destroyed head first. Nodes
// stay where they are until they are removed.
template <class T>
struct LinkedList {
  struct Node {
    T value;
    Node* next = nullptr;
    Node* prev = nullptr;
  };

  Node* head = nullptr;
  Node* tail = nullptr;
  uint64 count = 0;

  LinkedList() = default;
  // A list with copies of all elements, or std::bad_alloc: never a part of
  // them.
  LinkedList(const LinkedList& other) : LinkedList() {
    for (const T& value : other) {
      if (append(T(value)) == nullptr) throw std::bad_alloc();
    }
  }
  LinkedList(LinkedList&& other) noexcept { swap(other); }
  // Two functions: one that takes a copy would look as if it never threw.
  LinkedList& operator=(const LinkedList& other) {
    return *this = LinkedList(other);
  }
  LinkedList& operator=(LinkedList&& other) noexcept {
    LinkedList(std::move(other)).swap(*this);
    return *this;
  }
  ~LinkedList() { clear(); }

  void swap(LinkedList& other) noexcept {
    std::swap(head, other.head);
    std::swap(tail, other.tail);
    std::swap(count, other.count);
    std::swap(rooms, other.rooms);
    std::swap(filling, other.filling);
  }

  // Allocates memory for the next n nodes with few allocations, which is given
  // back with the list. False if there is not enough.
  // REQUIRES: all reserved before is used; takeFirst() takes none of it.
  bool reserve(uint64 n) noexcept {
    while (n != 0) {
      const uint64 size = std::min(n, ROOM_SIZE);
      void* memory =
          ::operator new(sizeof(Room) + size * sizeof(Node), std::nothrow);
      if (memory == nullptr) return false;
      filling = rooms = ::new (memory) Room{rooms, size, 0};
      n -= size;
    }
    return true;
  }

  // Moves `value` into a new node at the tail. Null, with the list unchanged,
  // when there is no memory for the node.
  T* append(T&& value) {
    void* memory = reserved();
    if (memory == nullptr) memory = ::operator new(sizeof(Node), std::nothrow);
    if (memory == nullptr) return nullptr;
    Node* node = ::new (memory) Node{std::move(value), nullptr, tail};
    (tail == nullptr ? head : tail->next) = node;
    tail = node;
    ++count;
    return &node->value;
  }

  // Unlinks and destroys `node`, which has to be one of this list.
  void remove(Node* node) {
    (node->prev == nullptr ? head : node->prev->next) = node->next;
    (node->next == nullptr ? tail : node->next->prev) = node->prev;
    --count;
    std::destroy_at(node);
    if (!isReserved(node)) ::operator delete(node);
  }

  // Moves the first node of `other`, which has one, to the tail of this list.
  void takeFirst(LinkedList& other) noexcept {
    Node* node = other.head;
    other.head = node->next;
    (other.head == nullptr ? other.tail : other.head->prev) = nullptr;
    --other.count;
    node->next = nullptr;
    node->prev = tail;
    (tail == nullptr ? head : tail->next) = node;
    tail = node;
    ++count;
  }

  void clear() {
    while (head != nullptr) remove(head);
    while (rooms != nullptr) {
      ::operator delete(std::exchange(rooms, rooms->next));
    }
    filling = nullptr;
  }

  // The first node whose value satisfies `test`, or null.
  template <class Test>
  const Node* find(Test&& test) const {
    const Node* node = head;
    while (node != nullptr && !test(node->value)) node = node->next;
    return node;
  }

  bool empty() const { return count == 0; }

  template <class Value>
  struct Iterator {
    Node* node;
    Value& operator*() const { return node->value; }
    Value* operator->() const { return &node->value; }
    Iterator& operator++() {
      node = node->next;
      return *this;
    }
    bool operator==(const Iterator&) const = default;
  };
  Iterator<T> begin() { return {head}; }
  Iterator<T> end() { return {nullptr}; }
  Iterator<const T> begin() const { return {head}; }
  Iterator<const T> end() const { return {nullptr}; }

 private:
  // Memory for nodes, which follow it.
  struct alignas(Node) Room {
    Room* next;
    uint64 size;  // in nodes
    uint64 used;

    Node* nodes() { return reinterpret_cast<Node*>(this + 1); }
  };
  // Allocators tidy up all they have before they give out much more.
  static constexpr uint64 ROOM_SIZE =
      std::max<uint64>(1, (1000 - sizeof(Room)) / sizeof(Node));

  // Memory for one node, or null.
  Node* reserved() {
    while (filling != nullptr && filling->used == filling->size) {
      filling = filling->next;
    }
    return filling == nullptr ? nullptr : filling->nodes() + filling->used++;
  }
  bool isReserved(const Node* node) const {
    const std::less<> before;
    for (Room* room = rooms; room != nullptr; room = room->next) {
      if (!before(node, room->nodes()) &&
          before(node, room->nodes() + room->size)) {
        return true;
      }
    }
    return false;
  }

  Room* rooms = nullptr;
  Room* filling = nullptr;  // those before it are full
};

}  // namespace gs
