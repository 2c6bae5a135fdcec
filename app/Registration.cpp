#include "Registration.h"

#include "AlignCommand.h"

namespace {

constexpr ArxCommand alignEntities{L"ZEPTOrlinth", L"ZEPTAlignEntities", L"ZEPTAlignEntities",
                                   ACRX_CMD_MODAL, RunAlignEntities,     nullptr,
                                   noResource};

constexpr ArxCustomClassTable DBXCUSTO{};
constexpr ArxCommandTable ARXCOMMA{&alignEntities};
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
