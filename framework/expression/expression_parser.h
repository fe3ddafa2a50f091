#pragma once

// The parser's state and steps. parser.cpp holds the values and what stands between brackets, the other files
// the operators, and the words that lead a part of an expression.

#include <vector>

#include "framework/expression/lexer.h"
#include "framework/expression/tree.h"

namespace tav {

/// Operator precedence with stacks of its own instead of calls: what is nested costs heap alone, and what
/// breaks the grammar leaves nothing to unwind.
class ExpressionParser {
 public:
  using Kind = ExpressionNode::Kind;
  using NodeId = std::uint32_t;
  static constexpr NodeId kNone = ExpressionNode::kNone;

  ExpressionParser(ExpressionTree& tree, ExpressionLanguage language)
      : tree_(tree), sql_(language == ExpressionLanguage::sql), lexer_(tree.source, language, tree.pieces) {}

  void run();

 private:
  static constexpr std::string_view kValue = "a value";
  static constexpr std::string_view kOperator = "an operator";
  static constexpr std::string_view kDepth = "at most 1,000 levels";

  enum class Open : std::uint8_t { root, tuple, window, call, set, caseOf };
  enum class CasePart : std::uint8_t { input, condition, value, otherwise };
  /// What stands before the place when a value does: it decides what a dot or a bracket means there.
  enum class After : std::uint8_t { constant, reference, closed, indexable };

  struct Frame {
    Open open = Open::root;
    CasePart part = CasePart::input;
    NodeId node = kNone;
    NodeId clause = kNone;      // of a CASE, the one that is being read
    bool parted = false;        // a comma was read
    std::size_t operators = 0;  // how many of the pending ones stand outside
    std::size_t values = 0;
  };
  struct Pending {
    Op op = Op::none;
    bool prefix = false;
    bool hasAnd = false;  // a BETWEEN whose AND was read
    std::size_t begin = 0;
  };

  void step();
  void take() {
    lastEnd_ = token_.end;
    token_ = lexer_.next(openCases_ > 0);
  }
  void fail(std::string_view expected) { lexer_.fail(token_.begin, expected); }
  void skip(std::string_view expected) {
    fail(expected);
    take();
  }
  [[nodiscard]] std::string_view expectation() const { return wantsValue_ ? kValue : kOperator; }
  Frame& frame() { return frames_.back(); }
  ExpressionNode& node(NodeId id) { return tree_.nodes[id]; }

  NodeId add(Kind kind, std::string_view name, std::size_t begin, std::size_t end);
  NodeId addToken(Kind kind) { return add(kind, token_.text, token_.begin, token_.end); }
  NodeId addNothing(Kind kind) { return add(kind, {}, token_.begin, token_.begin); }
  void append(NodeId parent, NodeId part);
  void pushValue(NodeId id, After after);

  // Values, and the pieces that they are parts of: what stands between brackets and commas.
  void operand();
  void reference();
  void call();
  void wantValue();
  bool passOverOpening();
  void open(Open what, NodeId id);
  [[nodiscard]] bool isPieceEmpty() const;
  NodeId takePiece();
  void addPiece();
  void comma();
  void close(bool brace);
  void closeFrame(bool missing);
  void finish();

  // Operators, and dots that join no names.
  void operation();
  [[nodiscard]] bool isLoneStar() const;
  [[nodiscard]] bool isPending(Op op) const;
  bool completesBetween();
  void pushBinary(Op op);
  void reduceTo(std::uint8_t binding);
  void reduce();
  void dot();
  void method();

  // CASE, and words that are names elsewhere.
  void caseWord();
  void startCasePart(Token::Kind word);
  void addCasePiece();
  void failCasePart(CasePart part);
  bool sqlWord();
  bool windowWord();
  void negatedOperator();

  ExpressionTree& tree_;
  bool sql_;
  Lexer lexer_;
  Token token_;
  std::size_t lastEnd_ = 0;
  std::vector<Frame> frames_{Frame{}};
  std::vector<Pending> pending_;
  std::vector<NodeId> values_;
  bool wantsValue_ = true;
  bool done_ = false;
  After after_ = After::constant;
  std::size_t openBrackets_ = 0;  // of tuples and calls
  std::size_t openBraces_ = 0;
  std::size_t openCases_ = 0;
  std::size_t passedBrackets_ = 0;  // of those that are too deep
  std::size_t passedBraces_ = 0;
};

}  // namespace tav
