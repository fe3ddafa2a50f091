#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>
#include <clang/ASTMatchers/ASTMatchFinder.h>

#include <vector>

namespace {

using clang::ast_matchers::MatchFinder;

// Reports nothing: it makes all other checks pass over the declarations of system headers, of which
// clang-tidy tells nothing anyway, but through which it would walk for every check and every file. It comes
// first, because the whole file is matched before its declarations are.
class OwnDeclarations : public clang::tidy::ClangTidyCheck {
 public:
  using ClangTidyCheck::ClangTidyCheck;

  void registerMatchers(MatchFinder* finder) override {
    finder->addMatcher(clang::ast_matchers::translationUnitDecl().bind("file"), this);
  }

  void check(const MatchFinder::MatchResult& result) override {
    std::vector<clang::Decl*> own;
    // What a precompiled header holds is not loaded: only system headers are precompiled.
    for (clang::Decl* declaration :
         result.Nodes.getNodeAs<clang::TranslationUnitDecl>("file")->noload_decls()) {
      const clang::SourceLocation place = declaration->getLocation();
      if (place.isValid() && !result.SourceManager->isInSystemHeader(place)) own.push_back(declaration);
    }
    result.Context->setTraversalScope(own);
  }
};

class OwnDeclarationsModule : public clang::tidy::ClangTidyModule {
 public:
  void addCheckFactories(clang::tidy::ClangTidyCheckFactories& factories) override {
    factories.registerCheck<OwnDeclarations>("own-declarations");
  }
};

const clang::tidy::ClangTidyModuleRegistry::Add<OwnDeclarationsModule> registered(
    "own-declarations", "Limits all checks to declarations outside system headers.");

}  // namespace
