// PolyArray written to the drawing.
#include <dbents.h>

#include "GeomStructs/PolyArray.h"
#include "GeomStructs/WrittenPolyLine.h"

namespace TamLib {
namespace {

// Draws by draw(id), which gives a status; the ids of what was added are kept, and the first status
// that is not good.
class Drawing {
  public:
    explicit Drawing(Array<AcDbObjectId>* ids) : ids_(ids) {}

    template <class Draw>
    void Add(const Draw& draw) {
        AcDbObjectId id;
        const int status = draw(&id);
        if (status_ == 0) status_ = status;
        if (ids_ != nullptr && !id.isNull()) ids_->Append(id);
    }
    int Status() const { return status_; }

  private:
    Array<AcDbObjectId>* ids_;
    int status_ = 0;
};

}  // namespace

int PolyArray::Draw(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                    AcDbDatabase* database, int kind) const {
    Drawing drawing(ids);
    for (const PolyLine* const line : *this)
        drawing.Add(
            [&](AcDbObjectId* id) { return line->ToDb(colour, layer, id, database, kind); });
    return drawing.Status();
}

int PolyArray::DrawClosed(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                          AcDbDatabase* database, int kind) const {
    Drawing drawing(ids);
    for (const PolyLine* const line : *this) {
        PolyLine closed(*line);
        closed.Close();
        drawing.Add(
            [&](AcDbObjectId* id) { return closed.ToDb(colour, layer, id, database, kind); });
    }
    return drawing.Status();
}

int PolyArray::DrawAsPoints(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                            AcDbDatabase* database) const {
    Drawing drawing(ids);
    for (const PolyLine* const line : *this)
        for (const Point3d& vertex : detail::Shifted(*line))
            drawing.Add([&](AcDbObjectId* id) { return vertex.ToDb(colour, layer, id, database); });
    return drawing.Status();
}

}  // namespace TamLib
