#include "base/product_files.h"
#include "zrcommon/logging.h"

unsigned int g_dwCurrentTraceLevel__ = 3;
const char* g_szLogFileName__ = zrcommon::kCommonLog;
const char* g_szAppName__ = "zrcommon";
char g_szLogPath[1024];
char szErrMsg[2048];
