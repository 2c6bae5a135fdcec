// Keys of the host's registry.
#pragma once

#define ACRX_CLASS_DICTIONARY ACRX_T("ClassDictionary")
#define ACRX_DYNAMIC_LINKER ACRX_T("DynamicLinker")
