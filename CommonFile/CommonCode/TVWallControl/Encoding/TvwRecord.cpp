#include "Encoding/TvwRecord.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>

namespace {

std::atomic<RecordOutput*> g_pDump{nullptr};
std::atomic<RecordOutput*> g_pReport{nullptr};

void Write(RecordOutput* pOutput, const char* szText, const RecordSite& site)
{
    if (pOutput != nullptr) {
        pOutput(szText, site.szSource, site.nLine);
    }
}

} // namespace

void SetRecordOutput(RecordOutput* pDump, RecordOutput* pReport)
{
    g_pDump = pDump;
    g_pReport = pReport;
}

void DumpText(const RecordSite& site, const char* szFormat, ...)
{
    char szText[4096] = {};
    va_list args;
    va_start(args, szFormat);
    (void)std::vsnprintf(szText, sizeof(szText), szFormat, args); // longer texts are cut
    va_end(args);
    Write(g_pDump, szText, site);
}

void CRecordVerifier::Report() const { Write(g_pReport, "ASSERT", m_site); }
