#pragma once

// The pieces of an expression as an analyzer is shown them. They live for the call that they are given to.

#include <string_view>
#include <vector>

#include "framework/api.h"
#include "framework/model/class_list.h"
#include "framework/std/string.h"

/// Any piece of an expression.
class TAV_API TAVExpressionNode {
 public:
  TAVExpressionNode() = default;
  explicit TAVExpressionNode(std::string_view text) : text_(text) {}

  /// The piece as it is written; a reference without the blanks and comments around its dots. A view, because
  /// the arguments of nested calls hold each other's text.
  [[nodiscard]] std::string_view getText() const noexcept { return text_; }

 protected:
  void setText(std::string_view text) noexcept { text_ = text; }

 private:
  std::string_view text_;
};

/// One part of a reference: `[Calendar]`, `CurrentMember`, `&[2009]`.
class TAV_API TAVElementNamePart {
 public:
  TAVElementNamePart(std::string_view text, std::string_view name) : text_(text), name_(name) {}

  /// The part as it is written.
  [[nodiscard]] std::string_view getText() const noexcept { return text_; }
  /// The part without the brackets or double quotes that enclose it; nothing inside is changed.
  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }

 private:
  std::string_view text_;
  TAVString name_;
};

/// A reference: names joined by dots.
class TAV_API TAVElementNode : public TAVExpressionNode {
 public:
  explicit TAVElementNode(std::string_view reference);

  /// The whole reference, its parts as they are written with nothing but a dot between them.
  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }
  [[nodiscard]] std::int32_t getElementNamePartCount() const noexcept {
    return static_cast<std::int32_t>(parts_.size());
  }
  /// The part at `position`, from 0; null outside.
  [[nodiscard]] const TAVElementNamePart* getElementNamePartByPosition(std::int32_t position) const noexcept;
  /// The code of the class of what the reference should name: a feature.
  [[nodiscard]] TAVElementType getExpectedElementType() const noexcept { return kFeature; }

 private:
  static constexpr TAVElementType kFeature = 77;
  TAVString name_;
  std::vector<TAVElementNamePart> parts_;
};

/// A call of a function or method.
class TAV_API TAVOperationNode : public TAVExpressionNode {
 public:
  TAVOperationNode(std::string_view text, std::string_view name, std::vector<TAVExpressionNode> arguments)
      : TAVExpressionNode(text), name_(name), arguments_(std::move(arguments)) {}

  /// The function's name, without its library.
  [[nodiscard]] const TAVString& getName() const noexcept { return name_; }
  /// What a method is called on is its first argument. An empty argument counts: its text is empty.
  [[nodiscard]] std::int32_t getExpressionNodeCount() const noexcept {
    return static_cast<std::int32_t>(arguments_.size());
  }
  /// The argument at `position`, from 0; null outside.
  [[nodiscard]] const TAVExpressionNode* getExpressionNodeByPosition(std::int32_t position) const noexcept;

 private:
  TAVString name_;
  std::vector<TAVExpressionNode> arguments_;
};

/// A whole expression.
class TAV_API TAVStatementNode : public TAVExpressionNode {
 public:
  using TAVExpressionNode::TAVExpressionNode;
};
