#pragma once

// The texts that a user sees, kept as objects so that a host can list them, find one by its key and replace
// its text.

#include "framework/std/array.h"
#include "framework/std/hashtable.h"
#include "framework/std/vector.h"

/// A text with a key.
class TAV_API TAVTextLiteral {
 public:
  TAVTextLiteral(TAVString key, TAVString text) : key_(std::move(key)), text_(std::move(text)) {}
  TAVTextLiteral(const TAVTextLiteral&) = default;
  TAVTextLiteral& operator=(const TAVTextLiteral&) = default;
  virtual ~TAVTextLiteral();

  /// Replaces the text, by a translation for example. The key stays.
  virtual void update(const TAVString& text);

  [[nodiscard]] const TAVString& getKey() const noexcept { return key_; }
  [[nodiscard]] const TAVString& getText() const noexcept { return text_; }

 private:
  TAVString key_;
  TAVString text_;
};

/// A text with the placeholders {0}, {1} and so on.
class TAV_API TAVParameterizedTextLiteral : public TAVTextLiteral {
 public:
  using TAVTextLiteral::TAVTextLiteral;
  TAVParameterizedTextLiteral(const TAVParameterizedTextLiteral&) = default;
  TAVParameterizedTextLiteral& operator=(const TAVParameterizedTextLiteral&) = default;
  ~TAVParameterizedTextLiteral() override;

  /// The text with each placeholder replaced by the argument of its number. One without an argument stays as
  /// written, and so does an argument that looks like a placeholder.
  [[nodiscard]] TAVString createParameterizedText(const TAVStringArray& arguments) const;
};

/// The text of a message, with the severity that its level names.
class TAV_API TAVMessageLiteral : public TAVParameterizedTextLiteral {
 public:
  /// `level` is the name of a severity, such as "WARNING"; any other name throws a TAVException. The code is
  /// the literal's key, and its message identifier too, until another one is set.
  TAVMessageLiteral(const TAVString& code, const TAVString& text, const TAVString& level);
  TAVMessageLiteral(const TAVMessageLiteral&) = default;
  TAVMessageLiteral& operator=(const TAVMessageLiteral&) = default;
  ~TAVMessageLiteral() override;

  /// The number of the severity, as log.h names them.
  [[nodiscard]] std::int32_t getLevel() const noexcept { return level_; }
  [[nodiscard]] const TAVString& getMessageIdentifier() const noexcept { return messageIdentifier_; }

 protected:
  void setMessageIdentifier(const TAVString& identifier) { messageIdentifier_ = identifier; }

 private:
  std::int32_t level_;
  TAVString messageIdentifier_;
};

/// The literals of one module, found by their keys. It refers to the literals and owns none.
class TAV_API TAVTextLiteralsCollection : public TAVHashtable {
 public:
  TAVTextLiteralsCollection(TAVString moduleName, TAVString collectionName);
  ~TAVTextLiteralsCollection() override;

  [[nodiscard]] const TAVString& getModuleName() const noexcept { return moduleName_; }
  [[nodiscard]] const TAVString& getCollectionName() const noexcept { return collectionName_; }

  using TAVHashtable::add;
  void add(TAVTextLiteral& literal) { add(&literal, true, nullptr); }

  /// To be called once, after the last add and before any text is read: here a collection would update() its
  /// literals, if the module had texts in other languages. Throws a TAVException when two literals share a
  /// key, because only one of them would ever be found.
  void init();

  /// The literal with this key, or null.
  [[nodiscard]] TAVTextLiteral* get(const TAVString& key) const;
  /// Appends every literal, as TAVTextLiteral*, in the order of adding.
  void listAllLiterals(TAVVector& literals) const;

  /// The hooks: a literal's key decides. Objects are TAVTextLiteral, keys are TAVString.
  int compare2Object(const void* a, const void* b) const override;
  int compare2Key(const void* object, const void* key) const override;
  [[nodiscard]] std::uint32_t hashObject(const void* object) const override;
  [[nodiscard]] std::uint32_t hashKey(const void* key) const override;

 private:
  TAVString moduleName_;
  TAVString collectionName_;
};
