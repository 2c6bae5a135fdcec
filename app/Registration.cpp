#include "Registration.h"

#include "AlignCommand.h"

namespace {

constexpr ArxCommand kAlignEntities{L"ZEPTOrlinth", L"ZEPTAlignEntities", L"ZEPTAlignEntities",
                                    ACRX_CMD_MODAL, RunAlignEntities,     nullptr,
                                    kNoResource};

constexpr ArxCustomClassTable DBXCUSTO{};
constexpr ArxCommandTable ARXCOMMA{&kAlignEntities};
constexpr ArxAdsSymbolTable ADSSYMBO{};

}  // namespace

const ArxCustomClassTable& ArxCustomClasses() {
    return DBXCUSTO;
}

const ArxCommandTable& ArxCommands() {
    return ARXCOMMA;
}

const ArxAdsSymbolTable& ArxAdsSymbols() {
    return ADSSYMBO;
}
