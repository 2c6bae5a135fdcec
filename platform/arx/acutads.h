// Printing, result buffers and pattern matching of the host.
#pragma once

#include <adscodes.h>
#include <adsdef.h>

// Prints on the command line. The format has the Windows meaning: %s takes wide text. Answers
// RTNORM, RTERROR when nothing could be printed (a null format, a text beyond 65535 characters).
int acutPrintf(const ACHAR* format, ...);

// A new cleared element of the type, or null. Owned by the caller until it hangs in a chain.
resbuf* acutNewRb(int type);

// Frees a chain with its texts and binary data. Null is harmless. Always RTNORM.
int acutRelRb(resbuf* chain);

// A chain from type and value pairs, ended by RTNONE or 0. Values by type: reals and angles double;
// points ads_point; RTSHORT and the 16-bit groups int; RTLONG and the 32-bit groups std::int32_t;
// RTINT64 std::int64_t; texts const ACHAR* (copied; null is the empty text); names ads_name; none
// for RTLB, RTLE, RTDOTE, RTNIL, RTT, RTVOID. A type it does not know, or no memory, gives null and
// frees what it built.
resbuf* acutBuildList(int type, ...);

// True when the whole text matches the pattern.
//   #  one digit                  @  one letter             .  one character that is neither
//   *  any characters, also none  ?  any one character      ~  at the start: anything but the rest
//   [abc] [a-z]  one of these     [~abc]  none of these     -  in brackets a range, unless first or
//   last ,  separates patterns         `  takes the next character as it is
// Leading and trailing blanks count. A bracket that is not closed stands for itself. Null matches
// nothing.
bool acutWcMatchEx(const ACHAR* text, const ACHAR* pattern, bool ignoreCase);

// The same with the answer as a code, case counting: RTNORM when it matches, otherwise RTERROR.
int acutWcMatch(const ACHAR* text, const ACHAR* pattern);

// The distance of two points in space.
double acutDistance(const ads_point from, const ads_point to);
