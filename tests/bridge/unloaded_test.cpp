#include <dlfcn.h>
#include <gtest/gtest.h>

#include "framework/model/model.h"
#include "framework/std/file.h"
#include "framework/std/log.h"
#include "tests/support/corpus.h"
#include "tests/support/model_laws.h"
#include "tests/support/model_text.h"

// A model that outlives the plug-in. This program is linked with the framework alone.

namespace {

class SilentLog : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& /*event*/) override {}
};

/// The plug-in, loaded as long as this object lives.
class Plugin {
 public:
  Plugin() : handle_(dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL)) {}
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  ~Plugin() { dlclose(handle_); }

  [[nodiscard]] tav::Owned<TAVStoreModel> import(const std::string& file) const {
    using Import = TAVStoreModel* (*)(const TAVString&, TAVFile, TAVLog*);
    const auto import = reinterpret_cast<Import>(
        dlsym(handle_, "_Z12execAsImportRK9TAVString7TAVFileP6TAVLog"));  // as the compiler writes its name
    SilentLog log;
    return tav::Owned<TAVStoreModel>(import("test", TAVFile(TAVString(file)), &log));
  }

 private:
  void* handle_;
};

TEST(Plugin, MayBeUnloadedBeforeItsModelsAreDeleted) {
  tav::Owned<TAVStoreModel> model;
  std::string text;
  {
    const Plugin plugin;
    model = plugin.import(tav::test::testFile("../examples/murmeltal-huts.asdatabase").string());
    text = tav::test::modelText(*model);
  }
#ifndef SANITIZED  // what a sanitizer adds keeps a library loaded
  ASSERT_EQ(dlopen(PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr);
#endif
  EXPECT_EQ(tav::test::modelText(*model), text);
  EXPECT_EQ(tav::test::brokenLaw(*model), "");  // walks, saves and exports it
  model->addDesignPackageUniqueName(tav::make<TAVDesignPackage>("Later"), '/');
  tav::destroy(*model->designPackages.first());
  model.reset();
}

}  // namespace
