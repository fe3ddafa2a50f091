#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "framework/model/reflection.h"
#include "framework/model/tree_walk.h"
#include "framework/serialization/model_reader.h"
#include "framework/serialization/model_schema.h"
#include "framework/serialization/model_writer.h"
#include "tests/support/corpus.h"

namespace {

// What XML finds hard to keep: markup, quotes, every kind of line end, blanks at both ends, far planes.
constexpr std::string_view kHardText =
    " <a href=\"x\">'&amp;' \t\r\n\r]]> \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8F\x94 ";

tav::Value fullValue(tav::AttributeKind kind) {
  switch (kind) {
    case tav::AttributeKind::flag:
      return true;
    case tav::AttributeKind::number:
      return std::int64_t{1};
    case tav::AttributeKind::text:
      return kHardText;
    case tav::AttributeKind::dataStore:
      return TAVDataStore{"A STORE", 11, 2, 30};
  }
  return false;
}

void fillAttributes(TAVObject& object) {
  object.setName(object.getMetaClass());
  for (const tav::AttributeRow* row : tav::classInfo(object.classId()).attributes) {
    try {
      row->set(object, fullValue(row->kind));
    } catch (const TAVException&) {
      row->set(object, std::int64_t{0});  // an enumeration of one value
    }
  }
}

/// A model with an object of every class in every role that it can have, two levels deep, every attribute
/// set, and every reference pointing somewhere.
tav::Owned<TAVStoreModel> makeFullModel() {
  auto model = tav::make<TAVStoreModel>();
  std::vector<std::pair<TAVObject*, int>> objects{{model.get(), 0}};
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const auto [object, depth] = objects[i];
    fillAttributes(*object);
    for (const tav::LinkInfo& link : tav::classInfo(object->classId()).links) {
      if (link.row->kind != tav::LinkKind::contained || depth > 3) continue;
      for (tav::ClassId id = link.row->target; id <= tav::kClassRanges[link.row->target].last; ++id) {
        if (!tav::classInfo(id).create) continue;
        TAVObject* part = tav::classInfo(id).create().release();
        tav::linkObjects(link.number, *object, *part);
        objects.emplace_back(part, depth + 1);
      }
    }
  }
  for (std::size_t i = 0; i < objects.size(); ++i) {
    TAVObject& object = *objects[i].first;
    for (const tav::LinkInfo& link : tav::classInfo(object.classId()).links) {
      if (link.row->kind != tav::LinkKind::reference) continue;
      // Backwards and forwards in the document, a different target each time.
      for (std::size_t j = 0, found = 0; j < objects.size() && found < 2; ++j) {
        TAVObject& target = *objects[(i * 7 + j) % objects.size()].first;
        if (!tav::derives(target.classId(), link.row->target)) continue;
        tav::linkObjects(link.number, object, target);
        ++found;
      }
    }
  }
  return model;
}

std::string saved(const TAVModel& model) {
  std::ostringstream out;
  tav::writeModel(model, out);
  return out.str();
}

TEST(RoundTrip, SavingWhatWasLoadedGivesTheSameBytes) {
  const auto model = makeFullModel();
  const std::string first = saved(*model);
  const auto loaded = tav::loadModelText(first, "full");
  EXPECT_TRUE(first == saved(*loaded));
  // Every class and every attribute is there, so the comparison speaks for all of them.
  for (tav::ClassId id = 0; id < tav::kClassCount; ++id) {
    const tav::ClassInfo& info = tav::classInfo(id);
    if (!info.create || id == tav::classId<TAVMultiModel> || id == tav::classId<TAVModelContent>) continue;
    EXPECT_NE(first.find("<" + std::string(info.name) + " "), std::string::npos) << info.name;
  }
}

TEST(RoundTrip, ACopyIsSavedAsItsOriginal) {
  const auto model = makeFullModel();
  const auto copy = tav::copyTree(*model);
  EXPECT_TRUE(saved(*model) == saved(static_cast<const TAVModel&>(*copy)));
}

TEST(RoundTrip, CharactersThatXmlCannotHoldAreReplaced) {
  auto model = tav::make<TAVStoreModel>("x");
  model->description = std::string_view("a\0b\x01\xEF\xBF\xBF\xED\xA0\x80\xC0\x80\xFFz", 14);
  const auto loaded = tav::loadModelText(saved(*model), "x");
  const TAVString r("\xEF\xBF\xBD");
  EXPECT_EQ(loaded->description, "a" + r + "b" + r + r + r + r + r + r + r + r + "z");
}

TEST(RoundTrip, ANestingOfAHundredThousandIsSavedAndLoaded) {
  auto model = tav::make<TAVStoreModel>("deep");
  auto* folder = &model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/');
  for (int i = 1; i < 100000; ++i) folder = &folder->addNamespaceElement(tav::make<TAVDesignPackage>("p"));
  const std::string text = saved(*model);
  EXPECT_LT(text.size(), 30U << 20);
  EXPECT_TRUE(text == saved(*tav::loadModelText(text, "deep")));
}

TEST(Loading, SaysWhatIsWrongAndWhere) {
  tav::test::checkCorpus("serialization/loading.txt", [](const std::string& input) {
    try {
      return saved(*tav::loadModelText(input, "model.xml"));
    } catch (const TAVException& failure) {
      return failure.getMessage().str();
    }
  });
}

TEST(Loading, EveryTruncationOfASavedModelIsAnErrorWithALine) {
  auto model = tav::make<TAVStoreModel>("m");
  auto& table = model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("p"), '/')
                    .addNamespaceElement(tav::make<TAVTable>("t"));
  table.addFeature(tav::make<TAVColumn>("c")).description = kHardText;
  const std::string whole = saved(*model);
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    try {
      tav::loadModelText(std::string_view(whole).substr(0, size), "cut.xml");
      FAIL() << "loaded from " << size << " of " << whole.size() << " bytes";
    } catch (const TAVException& failure) {
      EXPECT_NE(failure.getMessage().find("cut.xml:"), -1) << failure.what();
    }
  }
}

TEST(Loading, ASavedModelIsToldByItsRoot) {
  const tav::test::TemporaryFolder folder;
  const auto isSaved = [&](std::string_view content) {
    return tav::isSavedModel(folder.write("f", content));
  };
  EXPECT_TRUE(isSaved("<?xml version='1.0'?><!-- " + std::string(10000, ' ') + " --><TAVMultiModel>"));
  EXPECT_FALSE(isSaved("<Database><TAVMultiModel/></Database>"));
  EXPECT_FALSE(isSaved("{ \"name\": 1 }"));
  EXPECT_FALSE(isSaved(""));
  EXPECT_FALSE(tav::isSavedModel(folder.path().string()));
}

TEST(Loading, AModelThatAnEditorSavedInAnotherEncodingIsOne) {
  const auto model = tav::make<TAVStoreModel>("Sales");
  std::string document("\xFF\xFE");
  for (const char c : saved(*model)) document.append({c, '\0'});
  const tav::test::TemporaryFolder folder;
  const TAVString path(folder.write("model.xml", document));
  EXPECT_TRUE(tav::isSavedModel(path));
  EXPECT_EQ(saved(*tav::loadModel(path)), saved(*model));
}

TEST(Schema, TheDocumentedOneIsTheOneOfTheClasses) {
  std::ostringstream schema;
  tav::writeModelSchema(schema);
  const std::filesystem::path documented = tav::test::testFile("../docs/model.xsd");
  if (std::getenv("UPDATE_GOLDENS")) std::ofstream(documented) << schema.str();
  EXPECT_EQ(tav::test::readFile(documented), schema.str()) << "UPDATE_GOLDENS=1 rewrites docs/model.xsd";
}

TEST(Schema, AcceptsAModelWithEverythingInIt) {
  const tav::test::TemporaryFolder folder;
  const std::string file = folder.write("full.xml", saved(*makeFullModel()));
  const std::string schema = tav::test::testFile("../docs/model.xsd").string();
  const std::string command =
      "xmllint --huge --noout --schema '" + schema + "' '" + file + "' 2>&1 | head -20";
  const std::string check = "xmllint --huge --noout --schema '" + schema + "' '" + file + "' 2>/dev/null";
  if (std::system(check.c_str()) != 0) {
    static_cast<void>(std::system(command.c_str()));
    FAIL() << "the saved model does not keep to the schema";
  }
}

}  // namespace
