#pragma once

#include "profiles/PropertyList.h"

#include <cstdint>

/// Independent copies of the three class dictionaries in the current user's file; the caller owns them.
/// -1 when the file cannot be read, or at the first class that is absent: what was handed out before stays.
int32_t VelPListMappingGetMainDict_FromPlist(PropertyListDocument* rgb, PropertyListDocument* sim,
                                             PropertyListDocument* dst);

/// The six field dictionaries of a class dictionary, borrowed from its document. -1 at the first that is
/// absent. `iNum` is only written when the dictionary has a count, and may lack it.
int32_t VelPListMappingGetSubDict(PropertyListNode classDictionary, PropertyListNode* indexOnDevice,
                                  PropertyListNode* inMenu, PropertyListNode* profileClass,
                                  PropertyListNode* location, PropertyListNode* fileName,
                                  PropertyListNode* profileName, int32_t* iNum);
