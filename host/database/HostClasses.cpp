#include "host/database/HostClasses.h"

#include <dbapserv.h>
#include <dbdict.h>
#include <dbelipse.h>
#include <dbents.h>
#include <dbmline.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbsol3d.h>
#include <dbspline.h>
#include <dbsymtb.h>
#include <rxregsvc.h>

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

// An object of a class that the interface doesn't offer: it bears its class's name and is kept.
template <class Base, class TheFields>
class Named final : public Base {
  public:
    explicit Named(AcRxClass* descriptor) : descriptor_(descriptor) {
        this->impl()->setFields(std::make_unique<TheFields>());
    }
    AcRxClass* isA() const override { return descriptor_; }

  private:
    AcRxClass* descriptor_;
};

using Make = std::unique_ptr<AcDbObject> (*)(AcRxClass*);

template <class Base, class TheFields>
std::unique_ptr<AcDbObject> makeNamed(AcRxClass* descriptor) {
    return std::make_unique<Named<Base, TheFields>>(descriptor);
}

// The descriptors of kept classes, and what their objects are made as.
std::unordered_map<const AcRxClass*, Make>& keptClasses() {
    static auto* const classes = new std::unordered_map<const AcRxClass*, Make>;
    return *classes;
}

template <class Base, class TheFields>
ObjectClass named(const ACHAR* name, const ACHAR* dxfName = nullptr) {
    AcRxClass* descriptor = newAcRxClass(name, Base::desc()->name(), 0, nullptr, dxfName);
    const Make make = &makeNamed<Base, TheFields>;
    keptClasses().emplace(descriptor, make);
    return {descriptor, make};
}

// Whether a drawing may give this name to objects made so: not when the name belongs to a class of
// another make, for which its objects would be taken.
bool mayBear(const std::wstring& name, Make make) {
    auto* const classes = AcRxDictionary::cast(acrxSysRegistry()->at(ACRX_CLASS_DICTIONARY));
    const auto* known = static_cast<const AcRxClass*>(classes->at(name.c_str()));
    if (known == nullptr) return true;
    const auto kept = keptClasses().find(known);
    return kept != keptClasses().end() && kept->second == make;
}

template <class T>
ObjectClass whole() {
    return {T::desc(),
            [](AcRxClass*) -> std::unique_ptr<AcDbObject> { return std::make_unique<T>(); }};
}

using ClassTable = std::unordered_map<std::string_view, ObjectClass>;

struct Kept {
    const char* type;
    const ACHAR* dxfName;
    const ACHAR* className;
};

constexpr Kept kKeptEntities[] = {
    {"ACAD_PROXY_ENTITY", L"ACAD_PROXY_ENTITY", L"AcDbProxyEntity"},
    {"ACAD_TABLE", L"ACAD_TABLE", L"AcDbTable"},
    {"ARCALIGNEDTEXT", L"ARCALIGNEDTEXT", L"AcDbArcAlignedText"},
    {"BODY", L"BODY", L"AcDbBody"},
    {"CAMERA", L"CAMERA", L"AcDbCamera"},
    {"DGNUNDERLAY", L"DGNUNDERLAY", L"AcDbDgnReference"},
    {"DWFUNDERLAY", L"DWFUNDERLAY", L"AcDbDwfReference"},
    {"ENDBLK", L"ENDBLK", L"AcDbBlockEnd"},
    {"EXTRUDEDSURFACE", L"EXTRUDEDSURFACE", L"AcDbExtrudedSurface"},
    {"GEOPOSITIONMARKER", L"GEOPOSITIONMARKER", L"AcDbGeoPositionMarker"},
    {"HATCH", L"HATCH", L"AcDbHatch"},
    {"IMAGE", L"IMAGE", L"AcDbRasterImage"},
    {"LIGHT", L"LIGHT", L"AcDbLight"},
    {"LOFTEDSURFACE", L"LOFTEDSURFACE", L"AcDbLoftedSurface"},
    {"MESH", L"MESH", L"AcDbSubDMesh"},
    {"MLEADER", L"MLEADER", L"AcDbMLeader"},
    {"MULTILEADER", L"MULTILEADER", L"AcDbMLeader"},
    {"NURBSURFACE", L"NURBSURFACE", L"AcDbNurbSurface"},
    {"OLE2FRAME", L"OLE2FRAME", L"AcDbOle2Frame"},
    {"OLEFRAME", L"OLEFRAME", L"AcDbOleFrame"},
    {"PDFUNDERLAY", L"PDFUNDERLAY", L"AcDbPdfReference"},
    {"PLANESURFACE", L"PLANESURFACE", L"AcDbPlaneSurface"},
    {"REVOLVEDSURFACE", L"REVOLVEDSURFACE", L"AcDbRevolvedSurface"},
    {"RTEXT", L"RTEXT", L"RText"},
    {"SECTIONOBJECT", L"SECTIONOBJECT", L"AcDbSection"},
    {"SEQEND", L"SEQEND", L"AcDbSequenceEnd"},
    {"SHAPE", L"SHAPE", L"AcDbShape"},
    {"SURFACE", L"SURFACE", L"AcDbSurface"},
    {"SWEPTSURFACE", L"SWEPTSURFACE", L"AcDbSweptSurface"},
    {"TOLERANCE", L"TOLERANCE", L"AcDbFcf"},
    {"VIEWPORT", L"VIEWPORT", L"AcDbViewport"},
    {"WIPEOUT", L"WIPEOUT", L"AcDbWipeout"},
};

constexpr Kept kKeptObjects[] = {
    {"ACAD_PROXY_OBJECT", L"ACAD_PROXY_OBJECT", L"AcDbProxyObject"},
    {"ACDBDICTIONARYWDFLT", L"ACDBDICTIONARYWDFLT", L"AcDbDictionaryWithDefault"},
    {"ACDBPLACEHOLDER", L"ACDBPLACEHOLDER", L"AcDbPlaceHolder"},
    {"DICTIONARYVAR", L"DICTIONARYVAR", L"AcDbDictionaryVar"},
    {"GROUP", L"GROUP", L"AcDbGroup"},
    {"IMAGEDEF", L"IMAGEDEF", L"AcDbRasterImageDef"},
    {"LAYOUT", L"LAYOUT", L"AcDbLayout"},
    {"MATERIAL", L"MATERIAL", L"AcDbMaterial"},
    {"PLOTSETTINGS", L"PLOTSETTINGS", L"AcDbPlotSettings"},
    {"SORTENTSTABLE", L"SORTENTSTABLE", L"AcDbSortentsTable"},
    {"XRECORD", L"XRECORD", L"AcDbXrecord"},
};

constexpr Kept kKeptSymbols[] = {
    {"APPID", L"APPID", L"AcDbRegAppTableRecord"},
    {"DIMSTYLE", L"DIMSTYLE", L"AcDbDimStyleTableRecord"},
    {"UCS", L"UCS", L"AcDbUCSTableRecord"},
    {"VIEW", L"VIEW", L"AcDbViewTableRecord"},
    {"VPORT", L"VPORT", L"AcDbViewportTableRecord"},
};

// The classes of dimensions by the low bits of group 70.
constexpr const ACHAR* kDimensions[] = {L"AcDbRotatedDimension",      L"AcDbAlignedDimension",
                                        L"AcDb2LineAngularDimension", L"AcDbDiametricDimension",
                                        L"AcDbRadialDimension",       L"AcDb3PointAngularDimension",
                                        L"AcDbOrdinateDimension",     L"AcDbDimension"};

const ClassTable& entityClasses() {
    static const auto* const table = [] {
        auto* made = new ClassTable{
            {"3DFACE", whole<AcDbFace>()},
            {"3DSOLID", whole<AcDb3dSolid>()},
            {"ARC", whole<AcDbArc>()},
            {"ATTDEF", whole<AcDbAttributeDefinition>()},
            {"ATTRIB", whole<AcDbAttribute>()},
            {"CIRCLE", whole<AcDbCircle>()},
            {"ELLIPSE", whole<AcDbEllipse>()},
            {"LINE", whole<AcDbLine>()},
            {"LWPOLYLINE", whole<AcDbPolyline>()},
            {"MLINE", whole<AcDbMline>()},
            {"MTEXT", whole<AcDbMText>()},
            {"POINT", whole<AcDbPoint>()},
            {"REGION", whole<AcDbRegion>()},
            {"SOLID", whole<AcDbSolid>()},
            {"SPLINE", whole<AcDbSpline>()},
            {"TEXT", whole<AcDbText>()},
            {"TRACE", whole<AcDbTrace>()},
        };
        for (const Kept& kept : kKeptEntities) {
            made->emplace(kept.type, named<AcDbEntity, OpaqueFields>(kept.className, kept.dxfName));
        }
        made->emplace("BLOCK", named<AcDbEntity, OpaqueFields>(L"AcDbBlockBegin", L"BLOCK"));
        made->emplace("HELIX", named<AcDbSpline, SplineFields>(L"AcDbHelix", L"HELIX"));
        made->emplace("LEADER", named<AcDbCurve, LeaderFields>(L"AcDbLeader", L"LEADER"));
        made->emplace("RAY", named<AcDbCurve, OpaqueFields>(L"AcDbRay", L"RAY"));
        made->emplace("XLINE", named<AcDbCurve, OpaqueFields>(L"AcDbXline", L"XLINE"));
        made->emplace("ARC_DIMENSION",
                      named<AcDbEntity, DimensionFields>(L"AcDbArcDimension", L"ARC_DIMENSION"));
        made->emplace("LARGE_RADIAL_DIMENSION",
                      named<AcDbEntity, DimensionFields>(L"AcDbRadialDimensionLarge",
                                                         L"LARGE_RADIAL_DIMENSION"));
        return made;
    }();
    return *table;
}

const ClassTable& objectClasses() {
    static const auto* const table = [] {
        auto* made = new ClassTable{{"DICTIONARY", whole<AcDbDictionary>()},
                                    {"MLINESTYLE", whole<AcDbMlineStyle>()}};
        for (const Kept& kept : kKeptObjects) {
            made->emplace(kept.type, named<AcDbObject, NoFields>(kept.className, kept.dxfName));
        }
        return made;
    }();
    return *table;
}

const ClassTable& symbolClasses() {
    static const auto* const table = [] {
        auto* made = new ClassTable{{"LAYER", whole<AcDbLayerTableRecord>()},
                                    {"LTYPE", whole<AcDbLinetypeTableRecord>()},
                                    {"STYLE", whole<AcDbTextStyleTableRecord>()},
                                    {"BLOCK_RECORD", whole<AcDbBlockTableRecord>()}};
        for (const Kept& kept : kKeptSymbols) {
            made->emplace(kept.type, named<AcDbSymbolTableRecord, OtherSymbolFields>(kept.className,
                                                                                     kept.dxfName));
        }
        return made;
    }();
    return *table;
}

std::optional<ObjectClass> lookedUp(const ClassTable& table, std::string_view type) {
    const auto found = table.find(type);
    return found == table.end() ? std::nullopt : std::optional(found->second);
}

std::int64_t integerOf(const dxf::Document& document, dxf::RecordIndex record, int code) {
    const auto group = document.groups(record).find(code);
    return group ? group->integer().value_or(0) : 0;
}

ObjectClass classOfPolyline(const dxf::Document& document, dxf::RecordIndex record) {
    const auto flags = integerOf(document, record, 70);
    if ((flags & OldPolylineFields::kPolyface) != 0) return whole<AcDbPolyFaceMesh>();
    if ((flags & OldPolylineFields::kPolygonMesh) != 0) return whole<AcDbPolygonMesh>();
    return (flags & OldPolylineFields::kSpace) != 0 ? whole<AcDb3dPolyline>()
                                                    : whole<AcDb2dPolyline>();
}

// The polyline decides, since careless drawings set the vertex's own flags at will.
ObjectClass classOfVertex(const dxf::Document& document, const Structure& structure,
                          dxf::RecordIndex record) {
    const auto owner = structure.ownerOfSubEntity(record);
    const auto flags = owner ? integerOf(document, *owner, 70) : 0;
    if ((flags & OldPolylineFields::kPolyface) != 0) {
        const auto own = integerOf(document, record, 70);
        const bool isCorner = (own & OldPolylineFields::kPolyface) != 0;
        const bool isFace = (own & VertexFields::kPolyface) != 0 && !isCorner;
        return isFace ? whole<AcDbFaceRecord>() : whole<AcDbPolyFaceMeshVertex>();
    }
    if ((flags & OldPolylineFields::kPolygonMesh) != 0) return whole<AcDbPolygonMeshVertex>();
    return (flags & OldPolylineFields::kSpace) != 0 ? whole<AcDb3dPolylineVertex>()
                                                    : whole<AcDb2dVertex>();
}

ObjectClass classOfInsert(const dxf::Document& document, dxf::RecordIndex record) {
    const bool isArray = integerOf(document, record, 70) > 1 || integerOf(document, record, 71) > 1;
    return isArray ? whole<AcDbMInsertBlock>() : whole<AcDbBlockReference>();
}

ObjectClass classOfDimension(const dxf::Document& document, dxf::RecordIndex record) {
    const auto kind = static_cast<std::size_t>(integerOf(document, record, 70) & 7);
    return named<AcDbEntity, DimensionFields>(kDimensions[kind], L"DIMENSION");
}

ObjectClass classOfTable(const Structure& structure, dxf::RecordIndex record) {
    if (record == structure.tableObject(Table::block)) return whole<AcDbBlockTable>();
    if (record == structure.tableObject(Table::layer)) return whole<AcDbLayerTable>();
    if (record == structure.tableObject(Table::linetype)) return whole<AcDbLinetypeTable>();
    if (record == structure.tableObject(Table::textStyle)) return whole<AcDbTextStyleTable>();
    return named<AcDbSymbolTable, NoFields>(L"AcDbOtherSymbolTable", L"TABLE");
}

// What the drawing itself says about a type that the host doesn't know.
std::wstring toldClass(const dxf::Document& document, const Structure& structure,
                       dxf::RecordIndex record) {
    std::wstring name = structure.declaredClass(document.type(record));
    if (!name.empty()) return name;
    for (const dxf::Group& group : document.groups(record)) {
        if (group.code() == 100) name = document.decode(dxf::trimmed(group.bytes()));
    }
    return name == L"AcDbEntity" ? std::wstring() : name;
}

template <class Base, class TheFields>
ObjectClass classOfUnknown(const dxf::Document& document, const Structure& structure,
                           dxf::RecordIndex record, const ACHAR* proxy) {
    const std::wstring told = toldClass(document, structure, record);
    const bool usable = !told.empty() && mayBear(told, &makeNamed<Base, TheFields>);
    return named<Base, TheFields>(usable ? told.c_str() : proxy);
}

ObjectClass classOfEntity(const dxf::Document& document, const Structure& structure,
                          dxf::RecordIndex record) {
    const std::string_view type = document.type(record);
    if (type == "POLYLINE") return classOfPolyline(document, record);
    if (type == "VERTEX") return classOfVertex(document, structure, record);
    if (type == "INSERT") return classOfInsert(document, record);
    if (type == "DIMENSION") return classOfDimension(document, record);
    if (type == "BLOCK" && structure.block(record) != nullptr) return whole<AcDbBlockTableRecord>();
    if (const auto known = lookedUp(entityClasses(), type)) return *known;
    return classOfUnknown<AcDbEntity, OpaqueFields>(document, structure, record,
                                                    L"AcDbProxyEntity");
}

}  // namespace

void enterHostClasses() {
    static_cast<void>(AcDbDatabase::desc());
    static_cast<void>(AcDbHostApplicationServices::desc());
    for (AcRxClass* (*desc)() :
         {&AcDbObjectIterator::desc, &AcDbSymbolTableIterator::desc,
          &AcDbBlockTableRecordIterator::desc, &AcDb2dPolyline::desc, &AcDb3dPolyline::desc,
          &AcDbPolyFaceMesh::desc, &AcDbPolygonMesh::desc, &AcDb2dVertex::desc,
          &AcDb3dPolylineVertex::desc, &AcDbPolyFaceMeshVertex::desc, &AcDbFaceRecord::desc,
          &AcDbPolygonMeshVertex::desc, &AcDbMInsertBlock::desc, &AcDbBlockTable::desc,
          &AcDbLayerTable::desc, &AcDbLinetypeTable::desc, &AcDbTextStyleTable::desc}) {
        desc();
    }
    entityClasses();
    objectClasses();
    symbolClasses();
    for (const ACHAR* name : kDimensions) named<AcDbEntity, DimensionFields>(name, L"DIMENSION");
}

ObjectClass classOfRecord(const dxf::Document& document, const Structure& structure,
                          dxf::RecordIndex record) {
    const std::string_view type = document.type(record);
    if (type == "SECTION" || type == "ENDSEC" || type == "ENDTAB") return {};
    switch (document.section(record)) {
        case dxf::Section::tables:
            if (type == "TABLE") return classOfTable(structure, record);
            if (const auto known = lookedUp(symbolClasses(), type)) return *known;
            return classOfUnknown<AcDbObject, NoFields>(document, structure, record,
                                                        L"AcDbProxyObject");
        case dxf::Section::blocks:
        case dxf::Section::entities:
            return classOfEntity(document, structure, record);
        case dxf::Section::objects:
            if (const auto known = lookedUp(objectClasses(), type)) return *known;
            return classOfUnknown<AcDbObject, NoFields>(document, structure, record,
                                                        L"AcDbProxyObject");
        default:
            return {};
    }
}

ObjectClass classOfImplied(const Structure::Implied& implied) {
    switch (implied.table) {
        case Table::block:
            return implied.isTable ? whole<AcDbBlockTable>() : whole<AcDbBlockTableRecord>();
        case Table::layer:
            return implied.isTable ? whole<AcDbLayerTable>() : whole<AcDbLayerTableRecord>();
        case Table::linetype:
            return implied.isTable ? whole<AcDbLinetypeTable>() : whole<AcDbLinetypeTableRecord>();
        case Table::textStyle:
            return implied.isTable ? whole<AcDbTextStyleTable>()
                                   : whole<AcDbTextStyleTableRecord>();
        default:
            return implied.isTable ? whole<AcDbDictionary>() : whole<AcDbMlineStyle>();
    }
}

}  // namespace host::database
