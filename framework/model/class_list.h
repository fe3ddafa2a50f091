#pragma once

// The class tree of the metadata model, in pre-order: a class and its subclasses are a range of numbers,
// so that asking for a kind is a comparison of two numbers.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

class TAV_Object;
class TAVObject;
class TAVElement;
class TAVModelObject;
class TAVSystemPackage;
class TAVModel;
class TAVStoreModel;
class TAVStoreConnection;
class TAVNamespaceElement;
class TAVNamespace;
class TAVPackage;
class TAVDataPackage;
class TAVOlapSchema;
class TAVDesignPackage;
class TAVModelElement;
class TAVClassifier;
class TAVCube;
class TAVDimension;
class TAVLevel;
class TAVAliasClassifier;
class TAVTable;
class TAVSynonym;
class TAVType;
class TAVConcreteType;
class TAVBaseType;
class TAVDerivedType;
class TAVFeature;
class TAVStructuralFeature;
class TAVMeasure;
class TAVDimensionAttribute;
class TAVLevelAttribute;
class TAVColumn;
class TAVCondition;
class TAVAliasFeature;
class TAVHierarchy;
class TAVHierarchyLevelAssociation;
class TAVLevelKey;
class TAVCubeDimensionAssociation;
class TAVClassifierMap;
class TAVFeatureMap;
class TAVMetadataOrigin;
class TAVPropertyType;
class TAVPropertyValue;
class TAVMultiModel;
class TAVModelContent;

/// The code of a class in the element type numbering that plug-ins, saved models and importers share.
using TAVElementType = int;

namespace tav {

/// The number of a class: its place in the class list.
using ClassId = std::uint8_t;
inline constexpr ClassId kNoClass = 0xFF;

/// One line of the class list: the class, the class it derives from, its element type code, and whether
/// objects of exactly this class exist.
template <class T, class B, TAVElementType Code, bool Concrete = true> struct ClassEntry {
  using Type = T;
  using Base = B;
  static constexpr TAVElementType code = Code;
  static constexpr bool concrete = Concrete;
};

inline constexpr bool kAbstract = false;

template <class... Entries> struct ClassList {};

using Classes = ClassList<ClassEntry<TAV_Object, void, 1, kAbstract>,                       //
                          ClassEntry<TAVObject, TAV_Object, 2, kAbstract>,                  //
                          ClassEntry<TAVElement, TAVObject, 3, kAbstract>,                  //
                          ClassEntry<TAVModelObject, TAVElement, 4, kAbstract>,             //
                          ClassEntry<TAVSystemPackage, TAVModelObject, 5, kAbstract>,       //
                          ClassEntry<TAVModel, TAVSystemPackage, 6, kAbstract>,             //
                          ClassEntry<TAVStoreModel, TAVModel, 7>,                           //
                          ClassEntry<TAVStoreConnection, TAVSystemPackage, 216>,            //
                          ClassEntry<TAVNamespaceElement, TAVModelObject, 20, kAbstract>,   //
                          ClassEntry<TAVNamespace, TAVNamespaceElement, 10, kAbstract>,     //
                          ClassEntry<TAVPackage, TAVNamespace, 8, kAbstract>,               //
                          ClassEntry<TAVDataPackage, TAVPackage, 139, kAbstract>,           //
                          ClassEntry<TAVOlapSchema, TAVDataPackage, 140>,                   //
                          ClassEntry<TAVDesignPackage, TAVPackage, 9>,                      //
                          ClassEntry<TAVModelElement, TAVNamespaceElement, 74, kAbstract>,  //
                          ClassEntry<TAVClassifier, TAVModelElement, 75, kAbstract>,        //
                          ClassEntry<TAVCube, TAVClassifier, 85>,                           //
                          ClassEntry<TAVDimension, TAVClassifier, 87>,                      //
                          ClassEntry<TAVLevel, TAVClassifier, 86>,                          //
                          ClassEntry<TAVAliasClassifier, TAVClassifier, 82>,                //
                          ClassEntry<TAVTable, TAVClassifier, 83>,                          //
                          ClassEntry<TAVSynonym, TAVNamespaceElement, 21>,                  //
                          ClassEntry<TAVType, TAVNamespaceElement, 30, kAbstract>,          //
                          ClassEntry<TAVConcreteType, TAVType, 31, kAbstract>,              //
                          ClassEntry<TAVBaseType, TAVConcreteType, 32>,                     //
                          ClassEntry<TAVDerivedType, TAVConcreteType, 33>,                  //
                          ClassEntry<TAVFeature, TAVModelObject, 77, kAbstract>,            //
                          ClassEntry<TAVStructuralFeature, TAVFeature, 79, kAbstract>,      //
                          ClassEntry<TAVMeasure, TAVStructuralFeature, 97>,                 //
                          ClassEntry<TAVDimensionAttribute, TAVStructuralFeature, 95>,      //
                          ClassEntry<TAVLevelAttribute, TAVStructuralFeature, 96>,          //
                          ClassEntry<TAVColumn, TAVStructuralFeature, 88>,                  //
                          ClassEntry<TAVCondition, TAVStructuralFeature, 84>,               //
                          ClassEntry<TAVAliasFeature, TAVFeature, 98>,                      //
                          ClassEntry<TAVHierarchy, TAVModelObject, 89>,                     //
                          ClassEntry<TAVHierarchyLevelAssociation, TAVModelObject, 90>,     //
                          ClassEntry<TAVLevelKey, TAVModelObject, 91>,                      //
                          ClassEntry<TAVCubeDimensionAssociation, TAVModelObject, 92>,      //
                          ClassEntry<TAVClassifierMap, TAVElement, 76>,                     //
                          ClassEntry<TAVFeatureMap, TAVElement, 78>,                        //
                          ClassEntry<TAVMetadataOrigin, TAVElement, 50>,                    //
                          ClassEntry<TAVPropertyType, TAVElement, 40>,                      //
                          ClassEntry<TAVPropertyValue, TAVObject, 41>,                      //
                          ClassEntry<TAVMultiModel, TAVObject, 286>,                        //
                          ClassEntry<TAVModelContent, TAVObject, 295>>;

template <class T, class... Entries> consteval ClassId placeInList(ClassList<Entries...> /*list*/) {
  ClassId place = 0;
  const bool found = ((std::is_same_v<T, typename Entries::Type> ? true : (++place, false)) || ...);
  return found ? place : kNoClass;
}

/// The number of class T; T may be declared only.
template <class T> inline constexpr ClassId classId = placeInList<T>(Classes{});

template <class... Entries> consteval std::size_t countOf(ClassList<Entries...> /*list*/) {
  return sizeof...(Entries);
}
inline constexpr std::size_t kClassCount = countOf(Classes{});

/// What a class number alone decides.
struct ClassRange {
  TAVElementType code = 0;
  ClassId base = kNoClass;
  ClassId last = 0;  ///< the last of its subclasses, or the class itself
  bool concrete = false;
};

template <class... Entries> consteval auto rangesOf(ClassList<Entries...> /*list*/) {
  std::array<ClassRange, sizeof...(Entries)> ranges{
      ClassRange{Entries::code, classId<typename Entries::Base>, 0, Entries::concrete}...};
  for (std::size_t i = ranges.size(); i-- > 0;) {
    if (ranges[i].last < i) ranges[i].last = static_cast<ClassId>(i);
    if (ranges[i].base == kNoClass) continue;
    if (ranges[i].base >= i) throw "a class stands before the class it derives from";
    ClassRange& base = ranges[ranges[i].base];
    if (base.last < ranges[i].last) base.last = ranges[i].last;
  }
  for (std::size_t i = 1; i < ranges.size(); ++i) {
    // In pre-order the class before is the base itself or lies inside the base's range.
    if (ranges[i - 1].last >= i && i - 1 != ranges[i].base) throw "the class list is not in pre-order";
  }
  return ranges;
}
inline constexpr auto kClassRanges = rangesOf(Classes{});

constexpr bool derives(ClassId id, ClassId base) noexcept {
  return base <= id && id <= kClassRanges[base].last;
}

/// The class with this element type code, or kNoClass.
constexpr ClassId classOfCode(TAVElementType code) noexcept {
  for (std::size_t i = 0; i < kClassRanges.size(); ++i)
    if (kClassRanges[i].code == code) return static_cast<ClassId>(i);
  return kNoClass;
}

/// The name of T as the compiler writes it.
template <class T> constexpr std::string_view typeText() {
  std::string_view text = __PRETTY_FUNCTION__;
  text.remove_prefix(text.find("T = ") + 4);
  return text.substr(0, text.find_first_of(";]"));
}

}  // namespace tav
