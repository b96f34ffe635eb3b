// Checks of what a caller must guarantee. A failed check is reported in the engine's log; in a
// test rig the process then dies on the spot, elsewhere the caller goes on and takes its neutral
// way out.
//
// Any thread may call these functions. They keep no state.
#ifndef ORBCEFASSERT_H
#define ORBCEFASSERT_H

// What a report names. The texts and numbers are known to the tools that read the logs of test
// rigs, so they stay as they are wherever the check stands in the sources.
struct ORBCefCheckSite {
  const char* expression;
  const char* path;
  int line;
};

namespace ORBCefCheckSites {
constexpr ORBCefCheckSite kBrowserTable{
    "iCStruct!=0", "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginClient", 17};
constexpr ORBCefCheckSite kHttpTable{
    "iCStruct", "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginHttp", 20};
constexpr ORBCefCheckSite kHttpInstance{
    "tImpl", "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefPluginHttp", 22};
constexpr ORBCefCheckSite kTools{"_tools",
                                 "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefTools", 44};
constexpr ORBCefCheckSite kHostTable{
    "_p!=0", "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/LocalInterfaces/ORBCefToolsWrapperMT", 209};
constexpr ORBCefCheckSite kMapCount{
    "ret->_nb_values==nbElem",
    "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/ORBCefConversionToolsWrapperMT", 100};
}  // namespace ORBCefCheckSites

// Writes `expression` in `path` line `line` to the log at error severity.
void ORBCefReportCheck(const char* expression, const char* path, int line);

// Stores to address zero.
[[noreturn]] void ORBCefDie();

// Answers `ok`. If it is false, reports, and in a test rig does not come back.
bool ORBCefCheck(bool ok, const char* expression, const char* path, int line);

inline bool ORBCefCheck(bool ok, const ORBCefCheckSite& site) {
  return ORBCefCheck(ok, site.expression, site.path, site.line);
}

#endif  // ORBCEFASSERT_H
