// Codes of the C part of the interface: what functions answer, what a result buffer holds, and what
// a prompt accepts.
#pragma once

// Answers.
#define RTNORM 5100
#define RTERROR (-5001)
#define RTCAN (-5002)
#define RTREJ (-5003)
#define RTFAIL (-5004)
#define RTKWORD (-5005)
#define RTINPUTTRUNCATED (-5008)

// Types of result buffers. RTNONE is also the answer to a prompt that was left empty.
#define RTNONE 5000
#define RTREAL 5001
#define RTPOINT 5002
#define RTSHORT 5003
#define RTANG 5004
#define RTSTR 5005
#define RTENAME 5006
#define RTPICKS 5007
#define RTORINT 5008
#define RT3DPOINT 5009
#define RTLONG 5010
#define RTVOID 5014
#define RTLB 5016
#define RTLE 5017
#define RTDOTE 5018
#define RTNIL 5019
#define RTDXF0 5020
#define RTT 5021
#define RTRESBUF 5023
#define RTMODELESS 5027
#define RTLONG_PTR 5030
#define RTINT64 5031

// What acedInitGet lets the next prompt refuse or accept.
#define RSG_NONULL 1
#define RSG_NOZERO 2
#define RSG_NONEG 4
#define RSG_NOLIM 8
#define RSG_DASH 32
#define RSG_2D 64
#define RSG_OTHER 128
