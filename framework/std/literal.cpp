#include "framework/std/literal.h"

#include <charconv>

#include "framework/std/exception.h"
#include "framework/std/log.h"

namespace {

const TAVString& keyOf(const void* object) {
  return static_cast<const TAVTextLiteral*>(object)->getKey();
}

std::int32_t levelNumber(const TAVString& name) {
  const std::optional<std::int32_t> level = tav::severityOf(name);
  if (!level) tav::fail("TAVSTD_F0002", "There is no message level '" + name + "'.");
  return *level;
}

}  // namespace

TAVTextLiteral::~TAVTextLiteral() = default;
TAVParameterizedTextLiteral::~TAVParameterizedTextLiteral() = default;
TAVMessageLiteral::~TAVMessageLiteral() = default;
TAVTextLiteralsCollection::~TAVTextLiteralsCollection() = default;

void TAVTextLiteral::update(const TAVString& text) {
  text_ = text;
}

TAVString TAVParameterizedTextLiteral::createParameterizedText(const TAVStringArray& arguments) const {
  const std::string_view text = getText();
  std::string result;
  std::size_t done = 0;
  for (std::size_t open = text.find('{'); open != text.npos; open = text.find('{', open + 1)) {
    std::int32_t number = -1;
    const auto [end, error] = std::from_chars(text.data() + open + 1, text.data() + text.size(), number);
    const bool closed = end != text.data() + text.size() && *end == '}';
    if (error != std::errc() || !closed || number < 0 || number >= arguments.getCount()) continue;
    result.append(text.substr(done, open - done)).append(arguments[number]);
    done = static_cast<std::size_t>(end - text.data()) + 1;
  }
  return result.append(text.substr(done));
}

TAVMessageLiteral::TAVMessageLiteral(const TAVString& code, const TAVString& text, const TAVString& level)
    : TAVParameterizedTextLiteral(code, text), level_(levelNumber(level)), messageIdentifier_(code) {}

TAVTextLiteralsCollection::TAVTextLiteralsCollection(TAVString moduleName, TAVString collectionName)
    : moduleName_(std::move(moduleName)), collectionName_(std::move(collectionName)) {}

void TAVTextLiteralsCollection::init() {
  for (Iterator it(*this); it.hasNext();) {
    const void* literal = it.next();
    if (get(keyOf(literal)) != literal)
      tav::fail("TAVSTD_F0003",
                "Two literals of '" + collectionName_ + "' have the key '" + keyOf(literal) + "'.");
  }
}

TAVTextLiteral* TAVTextLiteralsCollection::get(const TAVString& key) const {
  return static_cast<TAVTextLiteral*>(findFirst(&key, nullptr));
}

void TAVTextLiteralsCollection::listAllLiterals(TAVVector& literals) const {
  for (Iterator it(*this); it.hasNext();) literals.add(it.next(), true, nullptr);
}

int TAVTextLiteralsCollection::compare2Object(const void* a, const void* b) const {
  return compare2Key(a, &keyOf(b));
}

int TAVTextLiteralsCollection::compare2Key(const void* object, const void* key) const {
  return keyOf(object) == *static_cast<const TAVString*>(key) ? 0 : 1;
}

std::uint32_t TAVTextLiteralsCollection::hashObject(const void* object) const {
  return hashKey(&keyOf(object));
}

std::uint32_t TAVTextLiteralsCollection::hashKey(const void* key) const {
  return stringHashCode(static_cast<const TAVString*>(key)->c_str());
}
