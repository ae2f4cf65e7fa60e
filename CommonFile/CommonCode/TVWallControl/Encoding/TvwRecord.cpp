#include "Encoding/TvwRecord.h"

#include <cstdarg>
#include <cstdio>

#include "HostFunctions.h"

void DumpText(const RecordSite& site, const char* szFormat, ...)
{
    char szText[4096] = {};
    va_list args;
    va_start(args, szFormat);
    (void)std::vsnprintf(szText, sizeof(szText), szFormat, args); // longer texts are cut
    va_end(args);
    SHARESDK_NormalOutput(szText, site.szSource, site.nLine);
}

void CRecordVerifier::Report() const { SHARESDK_AbnormalOutput("ASSERT", m_site.szSource, m_site.nLine); }
