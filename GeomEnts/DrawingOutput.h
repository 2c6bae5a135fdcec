// What writing geometry into a drawing needs of the host toolkit: layers, adding entities, texts,
// the style of multi-lines, the height of the view. Declared here, because the output of geometry
// stands below the toolkit; defined there, in ARX/GenARX*.cpp.
//
// A null `database` is the working one. Statuses are the host's (Acad::ErrorStatus), 0 being good.
#pragma once

#include "GeomEnts/Point3d.h"

class AcGeVector3d;

namespace TamLib {

// Makes a layer with the linetype "CONTINUOUS" of its database. False when there is such a layer
// already, so that false is no failure; also without a database, or when the host refuses the
// table, the name or the record. A name made of a letter and at least five digits, whatever follows
// them, is a code: the letter becomes a capital. Names beyond 511 characters are cut. Throws
// `TamExpAcad`, "Allocation of layerTableRecord failed", without memory.
bool ARXAddLayer(const wchar_t* name, AcDbDatabase* database = nullptr);

// Adds an entity, which is the caller's until now, to the model space. When it was added, `id`, if
// given, gets its id, and with `close` it is closed, otherwise it stays open for write. When it
// could not be added it is deleted, `id` stays, and the status says why.
int ARXAddToModelSpace(AcDbEntity* entity, AcDbObjectId* id, bool close,
                       AcDbDatabase* database = nullptr);

// Adds an AcDbText at `position` in the colour of that index (0 by block, 256 by layer). `rotation`
// is in radians. A height below 0.0001 in absolute value leaves that of the text style. `layer`, if
// given, is made when it doesn't exist; `normal` and `id` may be null. The status of
// `ARXAddToModelSpace`. Throws `TamExpAcad`, "Allocation of AcDbText failed", without memory.
int ARXMakeText(const Point3d& position, const wchar_t* text, const wchar_t* layer, double height,
                double rotation, int colour, const AcGeVector3d* normal, AcDbObjectId* id,
                AcDbDatabase* database = nullptr);

// The style "STANDARD" of multi-lines. False when the host gives none; `id` stays then.
bool ARXGetStandardMlineStyle(AcDbObjectId* id, AcDbDatabase* database = nullptr);

// The height of the current view in drawing units (VIEWSIZE); 0.0 without a working database.
// Throws `TamExpInvalidArgs`, "Invalid rb return value", when the host gives no real number.
double ARXViewSize();

// Writes a text of 12 pixels into the drawing window at a place of the drawing, in the inverted
// colour of the background. The drawing stays as it is; the next redraw takes the text away.
// Defined in ARX/ARXDrawText.cpp.
void ShowTextAt(const Point3d& point, const wchar_t* text);

// What every new entity gets: its colour and, when `layer` is given, the layer, which is made if it
// doesn't exist. What the host answers is ignored.
void SetColourAndLayer(AcDbEntity& entity, int colour, const wchar_t* layer,
                       AcDbDatabase* database);
// The layer alone.
void SetLayer(AcDbEntity& entity, const wchar_t* layer, AcDbDatabase* database);

}  // namespace TamLib
