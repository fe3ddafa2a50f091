#pragma once

#include "framework/std/container.h"

/// A hash table of untyped pointers that it does not own. A subclass says through four hooks what makes two
/// objects equal and where an object or a key belongs; the table never looks inside an object.
///
/// The hash of an object is asked for once, when the object is added. So objects may change their key or be
/// deleted while they are stored: growing, emptying, copying and destroying the table, and removing at an
/// iterator, call no hook. Finding calls them for the objects whose hash equals the one looked for.
class TAV_API TAVHashtable : public TAVContainer {
 public:
  explicit TAVHashtable(std::int32_t buckets = kDefaultBuckets);
  /// Refers to the same objects; -1 buckets keep the number of `source`.
  TAVHashtable(const TAVHashtable& source, std::int32_t buckets = -1);
  ~TAVHashtable() override;

  void empty() override;

  /// Stores the object, equal ones notwithstanding, in front of its bucket: of equal objects the one added
  /// last is found first. Always true. An iterator, unless null, is put at the object; the flag has no
  /// meaning. The table grows, so that finding stays as fast however much is stored.
  virtual bool add(void* object, bool flag, Iterator* iterator);
  /// Whether an object equal to this one is stored; an iterator, unless null, is put at it.
  virtual bool contains(const void* object, Iterator* iterator) const;
  /// The first stored object that matches the key, or null; an iterator, unless null, is put at it.
  virtual void* findFirst(const void* key, Iterator* iterator) const;
  /// Takes out the object that the iterator is at and gives it; null when it is at none.
  virtual void* remove(Iterator* iterator);

  /// Hook: 0 when the two objects are equal.
  virtual int compare2Object(const void* a, const void* b) const = 0;
  /// Hook: 0 when the object matches the key.
  virtual int compare2Key(const void* object, const void* key) const = 0;

  virtual TAVHashtable& operator=(const TAVHashtable& source);
  /// Whether both hold the same number of objects and each object has an equal one in the other table.
  virtual bool operator==(const TAVHashtable& other) const;
  virtual bool operator!=(const TAVHashtable& other) const;

  /// Changes the number of buckets to the smallest power of two that is not below `buckets`.
  virtual void resize(std::int32_t buckets);

  /// Hook: the hash of an object, which is the hash of its key.
  [[nodiscard]] virtual std::uint32_t hashObject(const void* object) const = 0;
  /// Hook: the hash of a key.
  [[nodiscard]] virtual std::uint32_t hashKey(const void* key) const = 0;

  [[nodiscard]] std::int32_t getBucketCount() const noexcept {
    return static_cast<std::int32_t>(buckets_.size());
  }

 private:
  static constexpr std::int32_t kDefaultBuckets = 16;

  struct Entry {  // of the object at the same index
    std::uint32_t hash;
    std::uint32_t next;  // in the bucket
  };

  [[nodiscard]] std::uint32_t& bucketOf(std::uint32_t hash) noexcept;
  [[nodiscard]] std::uint32_t firstOf(std::uint32_t hash) const noexcept;
  template <class Matches>
  [[nodiscard]] void* find(std::uint32_t hash, Iterator* iterator, Matches matches) const;
  void rebuild(std::size_t buckets);
  void closeHoles();

  std::vector<std::uint32_t> buckets_;
  std::vector<Entry> entries_;
};
