// Prompts, selection sets, variables, drawing on screen and LISP functions of the host's editor.
//
// Prompts answer RTNORM with a result, RTCAN when the user cancels (and when the input has ended),
// RTNONE when the reply is left empty where that is allowed, RTERROR otherwise. A null prompt
// stands for the host's own.
#pragma once

#include <acutads.h>
#include <adscodes.h>
#include <adsdef.h>

// Asks for one entity. One try: a miss, an empty reply, or a name that is no entity answers RTERROR
// with a word on the command line. `point` is written whenever a point was given, also with a miss;
// for an entity given by name it is the origin.
int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point);

// Makes a selection set. The result belongs to the caller: acedSSFree.
//   all null                       asks "Select objects: " until Enter
//   (":$", pair of prompts)        the same; `point1` is an array of two texts, asked while adding
//   and
//                                  while removing
//   (null, point)                  what lies under the point
//   "X" | "A" with filter          the whole drawing; "A" leaves frozen and locked layers out
//   "W" "C" with two points        inside, or inside or crossing, the rectangle
//   "WP" "CP" "F" with point list  `point1` is a chain of RTPOINT or RT3DPOINT elements
//   "P" "L"                        the previous set; the last visible entity
//   "I"                            RTERROR: nothing is ever selected beforehand
// A filter is a chain of group codes with values: 0, 2 and 8 and other texts are patterns; 62, 6,
// 410, 5 and numbers compare equal; -4 groups with <AND <OR <XOR <NOT and relational tests. RTNORM
// with at least one member, RTCAN, otherwise RTERROR; `set` is cleared then.
int acedSSGet(const ACHAR* mode, const void* point1, const void* point2, const resbuf* filter,
              ads_name set);

// The number of members. RTERROR for a name that is no selection set, an entity's included.
int acedSSLength(const ads_name set, Adesk::Int32* length);

// The member at an index from 0. RTERROR outside, and for a name that is no set.
int acedSSName(const ads_name set, Adesk::Int32 index, ads_name entity);

// Adds an entity at the end of `set`; a null `set` makes a new one. Null entity and set: a new
// empty set. `result` is the set; a member already there is not doubled.
int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);

// Removes an entity. RTERROR when it is no member.
int acedSSDel(const ads_name entity, const ads_name set);

// RTNORM when the entity is a member, RTERROR otherwise.
int acedSSMemb(const ads_name entity, const ads_name set);

// Gives a set back. Harmless, with RTERROR, for a name that is no set.
int acedSSFree(const ads_name set);

// Asks for a text. With `withBlanks` 0 a blank ends the reply, otherwise only Enter does. The
// buffer takes up to 132 characters with the terminator; a longer text is cut. An empty reply is
// RTNORM with the empty text. On RTCAN and RTERROR the buffer is left alone.
int acedGetString(int withBlanks, const ACHAR* prompt, ACHAR* result);
// The same for a buffer of `size` characters; RTINPUTTRUNCATED when the text was cut.
int acedGetString(int withBlanks, const ACHAR* prompt, ACHAR* result, std::size_t size);

// Asks for a point; `base` (or null) is the point that @ counts from. RTNONE for an empty reply,
// RTKWORD for a keyword of acedInitGet.
int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);

// Asks for one of the keywords that acedInitGet has set; RTNONE for an empty reply.
int acedGetKword(const ACHAR* prompt, ACHAR* result);

// What the next prompt accepts: bits of RSG_ and keywords separated by blanks, capitals showing the
// abbreviation. Null keywords: none.
int acedInitGet(int bits, const ACHAR* keywords);

// The keyword that the last prompt answered RTKWORD for, or the text with RSG_OTHER.
int acedGetInput(ACHAR* text);

// A system variable, names ignoring case. Texts of the result belong to the caller (free by
// acutRelRb of a chain, or acutDelString). RTERROR for an unknown name; setting also for the wrong
// type, a value out of range, or a variable that can only be read.
int acedGetVar(const ACHAR* name, resbuf* result);
int acedSetVar(const ACHAR* name, const resbuf* value);

// Draws a line on the screen that the next redraw takes away. Colours 0 to 256 or -1; RTERROR for
// any other colour or a null point.
int acedGrDraw(const ads_point from, const ads_point to, int colour, int highlight);

// Redraws an entity, or everything with a null name. Modes 1 show, 2 hide, 3 highlight, 4
// unhighlight, negative ones only the header of a complex entity; RTERROR for any other mode or a
// name that is no entity.
int acedRedraw(const ads_name entity, int mode);

// Shows a text that the user has to notice. Headless it goes to the command line and never waits.
int acedAlert(const ACHAR* text);

// 1 when the user has asked to stop since the command began, otherwise 0.
int acedUsrBrk();

// Functions callable from LISP, by a code that the module chooses.
int acedDefun(const ACHAR* name, short code);
int acedUndef(const ACHAR* name, short code);
int acedRegFunc(int (*function)(), int code);
// The code of the function that LISP is calling; RTERROR outside of such a call.
int acedGetFunCode();
