#pragma once

// The walk that every writer of a whole model makes: each object before its parts, parts by role.

#include <vector>

#include "framework/model/reflection.h"

namespace tav {

/// Walks an object and all that it contains without recursion. The visitor is told of each object
/// (`enter(object)`), of each role that holds parts (`enterRole(row)`, `leaveRole(row)`), and of an object's
/// end (`leave(object)`).
template <class Visitor> void walkTree(const TAVObject& root, Visitor&& visitor) {
  struct Frame {
    const TAVObject* object;
    std::span<const LinkInfo> roles;
    std::size_t role;
    EndWalk parts;
    bool inRole;
  };
  std::vector<Frame> open;
  const auto enter = [&](const TAVObject& object) {
    visitor.enter(object);
    open.push_back({&object, classInfo(object.classId()).parts, 0, EndWalk(), false});
  };
  const auto leaveRole = [&](Frame& frame) {
    if (frame.inRole) visitor.leaveRole(*frame.roles[frame.role - 1].row);
    frame.inRole = false;
  };
  // Moves to the next role that holds parts.
  const auto nextRole = [&](Frame& frame) {
    while (frame.role < frame.roles.size()) {
      const LinkRow& row = *frame.roles[frame.role++].row;
      EndWalk parts(row, *frame.object);
      if (!EndWalk(parts).next()) continue;
      frame.parts = parts;
      frame.inRole = true;
      visitor.enterRole(row);
      return true;
    }
    return false;
  };
  enter(root);
  while (!open.empty()) {
    Frame& frame = open.back();
    if (const TAVObject* part = frame.inRole ? frame.parts.next() : nullptr) {
      enter(*part);
      continue;
    }
    leaveRole(frame);
    if (nextRole(frame)) continue;
    visitor.leave(*frame.object);
    open.pop_back();
  }
}

/// Calls `visit(object)` for an object and all that it contains, each before its parts, without recursion.
template <class F> void forEachObject(const TAVObject& root, F visit) {
  struct Visitor {
    F& visit;
    void enter(const TAVObject& object) { visit(object); }
    void enterRole(const LinkRow& /*row*/) {}
    void leaveRole(const LinkRow& /*row*/) {}
    void leave(const TAVObject& /*object*/) {}
  };
  walkTree(root, Visitor{visit});
}

/// Gives every object of the tree its number in document order, from 1 (see Numbering), and returns how many
/// there are. Objects that `leaveOut` holds for get none.
template <class Predicate> std::uint32_t numberTree(const TAVObject& root, Predicate leaveOut) {
  std::uint32_t count = 0;
  forEachObject(root, [&](const TAVObject& object) {
    if (!leaveOut(object)) Numbering::set(object, ++count);
  });
  return count;
}

}  // namespace tav
