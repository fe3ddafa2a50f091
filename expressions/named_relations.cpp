#include "expressions/named_relations.h"

#include "expressions/dax_names.h"
#include "framework/expression/parser.h"
#include "framework/std/dotted_name.h"
#include "framework/std/text.h"

namespace tav {
namespace {

class NameRelations {
 public:
  NameRelations(Details& details, CubeNames& names, const NamingExpression& expression)
      : details_(details), names_(names), expression_(expression) {
    const TAVFeatureMap* map =
        expression.measure ? expression.measure->getDestinationOfFeatureMap() : nullptr;
    if (!map) return;
    for (const TAVFeature& source : map->sourceFeatures) sources_.push_back(&source);
    inModel_.insert(sources_.begin(), sources_.end());
  }

  ExpressionFault run() {
    const ExpressionTree tree = parseExpression(expression_.text, ExpressionLanguage::mdx);
    // A set may get a name inside an expression.
    for (const ExpressionNode& node : tree.nodes)
      if (node.kind == ExpressionNode::Kind::name) local_.insert(foldedName(node.name));
    std::vector<std::uint32_t> left;
    if (tree.root != ExpressionNode::kNone) left.push_back(tree.root);
    while (!left.empty()) {
      const ExpressionNode& node = tree.nodes[left.back()];
      left.pop_back();
      if (node.next != ExpressionNode::kNone) left.push_back(node.next);
      if (node.first != ExpressionNode::kNone) left.push_back(node.first);
      if (node.kind == ExpressionNode::Kind::reference)
        reference(node);
      else if (node.kind == ExpressionNode::Kind::call)
        call(tree, node);
    }
    replaceSources();
    return tree.fault;
  }

  void runDax(std::string_view table) {
    for (const DaxName& name : daxNamesIn(expression_.text)) {
      NameMeaning meaning = meaningOf(name, table);
      if (name.name.empty() && meaning.whole) meaning.open.reset();  // tables are what functions take
      if (!name.isWord || meaning.whole) add(meaning, name.text);
    }
  }

 private:
  /// A measure may be named with any table, and a column of the measure's own table without it.
  NameMeaning meaningOf(const DaxName& name, std::string_view ownTable) {
    if (name.name.empty()) return names_.find(bracketed(name.table));
    const std::string column = bracketed(name.name);
    NameMeaning measure = names_.find("[Measures]." + column);
    if (name.table.empty() && measure.open != OpenNameState::mistake) return measure;
    const std::string_view table = name.table.empty() ? ownTable : std::string_view(name.table);
    NameMeaning found = names_.find(bracketed(table) + "." + column);
    const bool isMeasure = found.open == OpenNameState::mistake && measure.open != OpenNameState::mistake;
    return isMeasure ? measure : found;
  }

  void reference(const ExpressionNode& node) {
    if (expression_.isQuery && node.bare) return;
    if (node.begin == functionAt_) return;
    if (!local_.empty() && local_.contains(foldedName(node.name))) return;
    add(names_.find(node.name), node.name);
  }

  void call(const ExpressionTree& tree, const ExpressionNode& node) {
    if (node.first == ExpressionNode::kNone) return;
    const ExpressionNode& first = tree.nodes[node.first];
    if (first.kind == ExpressionNode::Kind::constant && node.count == 1)
      return add(names_.findOfFunction(node.name, tree.textOf(first)), tree.textOf(node));
    // Assembly.Class.Function(...) looks like a method of what its name begins with.
    const bool method = first.kind == ExpressionNode::Kind::reference && first.begin == node.begin &&
                        first.name.find('[') == first.name.npos;
    if (!method) return;
    const NameMeaning meaning = names_.find(first.name);
    if (meaning.open != OpenNameState::mistake) return;
    functionAt_ = first.begin;
    note(std::string(first.name).append(".").append(node.name), OpenNameState::beyond,
         "a function of an assembly");
  }

  void add(const NameMeaning& meaning, std::string_view text) {
    if (namesItself(meaning)) return;
    for (std::size_t i = 0; i < meaning.objects.size(); ++i) {
      const TAVModelObject* object = meaning.objects[i];
      const bool isMeasure = names_.isMeasure(object);
      if (i < meaning.attributes.size()) found_.insert(meaning.attributes[i]);
      if (expression_.range && (isMeasure || is<TAVDimension>(*object))) {
        if (related_.insert(object).second) expression_.range->push_back(object);
        continue;
      }
      const TAVModelObject* known = i >= meaning.attributes.size() ? object
                                    : meaning.isAsInModel          ? meaning.attributes[i]
                                                                   : nullptr;
      if (known && inModel_.contains(known)) continue;
      if (related_.insert(object).second)
        details_.relate(expression_.relation, details_.itemOf(*object), expression_.item);
    }
    for (const ItemId item : meaning.items)
      if (item != expression_.item && relatedItems_.insert(item).second)
        details_.relate(expression_.relation, item, expression_.item);
    if (meaning.whole && names_.isNewWhole(*meaning.whole)) relateWhole(*meaning.whole);
    if (meaning.taken) taken_.insert(meaning.taken);
    if (meaning.open) note(text, *meaning.open, meaning.note);
  }

  /// Lets a dimension that is named as a whole lead to its attributes: once for all expressions, not for
  /// each.
  void relateWhole(const TAVClassifier& dimension) {
    const ItemId item = details_.itemOf(dimension);
    for (const TAVFeature& attribute : dimension.features)
      details_.relate(RelationKind::basis, details_.itemOf(attribute), item);
  }

  /// As what is said of a set beside the script does.
  [[nodiscard]] bool namesItself(const NameMeaning& meaning) const {
    return meaning.objects.empty() && meaning.items.size() == 1 && meaning.items[0] == expression_.item;
  }

  void note(std::string_view name, OpenNameState state, std::string_view what) {
    if (noted_.emplace(name).second) details_.addOpenName(expression_.item, name, state, what);
  }

  /// Sources that the model has because a dimension of the database bears the name that the cube gives to
  /// another one.
  void replaceSources() {
    if (taken_.empty()) return;
    for (const TAVFeature* source : sources_)
      if (taken_.contains(source->classifier.get()) && !found_.contains(source))
        details_.relate(RelationKind::replaced, details_.itemOf(*source), expression_.item);
  }

  Details& details_;
  CubeNames& names_;
  const NamingExpression& expression_;
  std::vector<const TAVFeature*> sources_;  // of the model
  std::unordered_set<const TAVModelObject*> inModel_;
  std::unordered_set<const TAVModelObject*> found_;  // attributes of the database
  std::unordered_set<const TAVModelObject*> related_;
  std::unordered_set<ItemId> relatedItems_;
  std::unordered_set<const TAVClassifier*> taken_;
  std::unordered_set<std::string> local_;
  std::unordered_set<std::string> noted_;
  std::size_t functionAt_ = ExpressionFault::kNowhere;
};

}  // namespace

ExpressionFault relateNames(Details& details, CubeNames& names, const NamingExpression& expression) {
  return NameRelations(details, names, expression).run();
}

void relateDaxNames(Details& details, CubeNames& names, const NamingExpression& expression,
                    std::string_view table) {
  NameRelations(details, names, expression).runDax(table);
}

}  // namespace tav
