// A plugin for clang-tidy, see tools/tidy: its checks look at what the project's own files declare and not at all that
// they include. It would report nothing of the system's headers anyway, and takes two thirds of its time to look there.
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class OwnDeclarations final : public clang::ASTConsumer {
 public:
  void HandleTranslationUnit(clang::ASTContext& context) override {
    std::vector<clang::Decl*> own;
    for (clang::Decl* declaration : context.getTranslationUnitDecl()->decls()) {
      if (!context.getSourceManager().isInSystemHeader(declaration->getLocation())) own.push_back(declaration);
    }
    context.setTraversalScope(own);
  }
};

/// Comes before the checks, in every file that clang-tidy reads once the plugin is loaded.
class LintScope final : public clang::PluginASTAction {
 protected:
  std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance& /*compiler*/,
                                                        llvm::StringRef /*file*/) override {
    return std::make_unique<OwnDeclarations>();
  }
  bool ParseArgs(const clang::CompilerInstance& /*compiler*/, const std::vector<std::string>& /*words*/) override {
    return true;
  }
  ActionType getActionType() override { return AddBeforeMainAction; }
};

const clang::FrontendPluginRegistry::Add<LintScope> registered("lint-scope", "checks look at the project's own code");

}  // namespace
