// Classes at run time: identity, derivation, the class dictionary.
#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbspline.h>
#include <dbsymtb.h>
#include <gtest/gtest.h>
#include <rxregsvc.h>

#include "host/database/RunTimeClasses.h"
#include "tests/host/support/LedgerListener.h"

namespace {

class StreetName : public AcDbText {
  public:
    ACRX_DECLARE_MEMBERS(StreetName);
};

class BridgeName : public StreetName {
  public:
    ACRX_DECLARE_MEMBERS(BridgeName);
};

}  // namespace

ACRX_CONS_DEFINE_MEMBERS(StreetName, AcDbText, 1)
ACRX_DXF_DEFINE_MEMBERS(BridgeName, StreetName, 0, 0, 0, BRIDGENAME, Streets)

namespace {

AcRxDictionary* classes() {
    return AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_T("ClassDictionary")));
}

}  // namespace

TEST(RunTimeClass, NamesAndParentsAreThoseOfTheInterface) {
    const std::vector<std::pair<AcRxClass*, std::vector<const wchar_t*>>> lines = {
        {AcDbText::desc(), {L"AcDbText", L"AcDbEntity", L"AcDbObject", L"AcRxObject"}},
        {AcDbAttribute::desc(), {L"AcDbAttribute", L"AcDbText", L"AcDbEntity"}},
        {AcDbAttributeDefinition::desc(), {L"AcDbAttributeDefinition", L"AcDbText"}},
        {AcDbMInsertBlock::desc(), {L"AcDbMInsertBlock", L"AcDbBlockReference", L"AcDbEntity"}},
        {AcDbPolyline::desc(), {L"AcDbPolyline", L"AcDbCurve", L"AcDbEntity"}},
        {AcDb2dPolyline::desc(), {L"AcDb2dPolyline", L"AcDbCurve"}},
        {AcDb3dPolyline::desc(), {L"AcDb3dPolyline", L"AcDbCurve"}},
        {AcDbSpline::desc(), {L"AcDbSpline", L"AcDbCurve"}},
        {AcDbEllipse::desc(), {L"AcDbEllipse", L"AcDbCurve"}},
        {AcDbRegion::desc(), {L"AcDbRegion", L"AcDbEntity"}},
        {AcDbPoint::desc(), {L"AcDbPoint", L"AcDbEntity"}},
        {AcDb2dVertex::desc(), {L"AcDb2dVertex", L"AcDbVertex", L"AcDbEntity"}},
        {AcDbLayerTableRecord::desc(),
         {L"AcDbLayerTableRecord", L"AcDbSymbolTableRecord", L"AcDbObject"}},
        {AcDbLayerTable::desc(), {L"AcDbLayerTable", L"AcDbSymbolTable", L"AcDbObject"}},
    };
    for (const auto& [first, names] : lines) {
        const AcRxClass* aClass = first;
        for (const wchar_t* name : names) {
            ASSERT_NE(aClass, nullptr);
            EXPECT_STREQ(aClass->name(), name);
            aClass = aClass->myParent();
        }
    }
    EXPECT_EQ(AcRxObject::desc()->myParent(), nullptr);
}

TEST(RunTimeClass, DerivationHoldsUpwardsAndForItself) {
    EXPECT_TRUE(AcDbText::desc()->isDerivedFrom(AcDbText::desc()));
    EXPECT_TRUE(AcDbAttribute::desc()->isDerivedFrom(AcDbText::desc()));
    EXPECT_TRUE(AcDbText::desc()->isDerivedFrom(AcRxObject::desc()));
    EXPECT_FALSE(AcDbText::desc()->isDerivedFrom(AcDbAttribute::desc()));
    EXPECT_FALSE(AcDbText::desc()->isDerivedFrom(AcDbCurve::desc()));
    EXPECT_FALSE(AcDbText::desc()->isDerivedFrom(nullptr));
}

TEST(RunTimeClass, DescriptorIsOneForItsClass) {
    EXPECT_EQ(AcDbText::desc(), AcDbText().isA());
    EXPECT_EQ(AcDbText::desc(), classes()->at(L"AcDbText"));
    EXPECT_EQ(classes()->at(L"acdbtext"), classes()->at(L"AcDbText"));
    EXPECT_NE(AcDbText::desc(), AcDbMText::desc());
    EXPECT_STREQ(AcDbText::desc()->dxfName(), L"TEXT");
    EXPECT_EQ(AcDbEntity::desc()->dxfName(), nullptr);
    EXPECT_EQ(AcDbText::desc()->isA(), AcRxClass::desc());
}

TEST(RunTimeClass, SubclassOfTextIsKindOfTextButNotText) {
    const StreetName name;
    EXPECT_NE(name.isA(), AcDbText::desc());
    EXPECT_EQ(name.isA(), StreetName::desc());
    EXPECT_TRUE(name.isKindOf(AcDbText::desc()));
    EXPECT_EQ(AcDbText::cast(&name), &name);
    EXPECT_EQ(StreetName::cast(&name), &name);
    EXPECT_EQ(AcDbMText::cast(&name), nullptr);
    EXPECT_EQ(AcDbText::cast(nullptr), nullptr);
    const AcDbText text;
    EXPECT_EQ(StreetName::cast(&text), nullptr);
}

TEST(RunTimeClass, CreateGivesANewObjectOfTheClass) {
    const std::unique_ptr<AcRxObject> made(AcDbText::desc()->create());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->isA(), AcDbText::desc());
    EXPECT_EQ(AcDbEntity::desc()->create(), nullptr);
}

TEST(Registry, KnowsTheClassDictionaryAndNothingElseOfItself) {
    EXPECT_NE(classes(), nullptr);
    EXPECT_EQ(acrxSysRegistry()->at(L"no such key"), nullptr);
    EXPECT_EQ(acrxSysRegistry()->at(nullptr), nullptr);
    EXPECT_FALSE(acrxSysRegistry()->has(L"no such key"));
}

TEST(Registry, HoldsWhatIsPutIntoIt) {
    AcDbText text;
    EXPECT_EQ(acrxSysRegistry()->atPut(L"a key", &text), nullptr);
    EXPECT_EQ(acrxSysRegistry()->at(L"A KEY"), &text);
    AcDbLine line;
    EXPECT_EQ(acrxSysRegistry()->atPut(L"a key", &line), &text);
    EXPECT_EQ(acrxSysRegistry()->remove(L"a key"), &line);
    EXPECT_EQ(acrxSysRegistry()->remove(L"a key"), nullptr);
    EXPECT_EQ(acrxSysRegistry()->atPut(nullptr, &text), nullptr);
}

TEST(ClassHierarchy, ClassMadeBeforeItsParentIsLinkedByTheBuilding) {
    host::database::clearClassHierarchyRecord();
    AcRxClass* child = newAcRxClass(L"TestChild", L"TestParent");
    EXPECT_EQ(child->myParent(), nullptr);
    AcRxClass* parent = newAcRxClass(L"TestParent", L"AcDbEntity");
    acrxBuildClassHierarchy();
    EXPECT_EQ(child->myParent(), parent);
    EXPECT_TRUE(child->isDerivedFrom(AcDbEntity::desc()));
    EXPECT_EQ(newAcRxClass(L"TestChild", L"AcDbCurve"), child);
    deleteAcRxClass(parent);
    EXPECT_EQ(classes()->at(L"TestParent"), parent) << "a class that another derives from stays";
    deleteAcRxClass(child);
    deleteAcRxClass(parent);
    deleteAcRxClass(nullptr);
    EXPECT_EQ(classes()->at(L"TestParent"), nullptr);
    EXPECT_EQ(host::database::classHierarchyRecord(),
              (std::vector<std::wstring>{L"build", L"delete TestParent", L"delete TestChild",
                                         L"delete TestParent"}));
    host::database::clearClassHierarchyRecord();
    EXPECT_TRUE(host::database::classHierarchyRecord().empty());
}

TEST(ClassHierarchy, HostsOwnClassesAreNotDeleted) {
    deleteAcRxClass(AcDbMInsertBlock::desc());
    EXPECT_EQ(classes()->at(L"AcDbMInsertBlock"), AcDbMInsertBlock::desc());
    host::database::clearClassHierarchyRecord();
}

TEST(ClassHierarchy, ModulesClassBearsItsRecordNameAndApplication) {
    EXPECT_STREQ(BridgeName::desc()->dxfName(), L"BRIDGENAME");
    EXPECT_STREQ(BridgeName::desc()->appName(), L"Streets");
    EXPECT_EQ(BridgeName::desc()->myParent(), StreetName::desc());
}
