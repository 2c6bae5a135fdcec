// Between entity names, which the editor's functions use, and object ids.
#pragma once

#include <adsdef.h>
#include <dbmain.h>

// The id of the object that `name` stands for. eInvalidAdsName for a name that no database knows, a
// selection set's included; `id` is null then.
Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);

// The name of an object. eNullObjectId, eInvalidObjectId or eNoDatabase leave `name` cleared.
Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id);
