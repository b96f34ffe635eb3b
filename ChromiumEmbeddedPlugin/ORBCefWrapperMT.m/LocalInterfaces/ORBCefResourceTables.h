// The two tables that the module reads from XML files of the installation: MIME types by file
// extension, and the URI schemes that may be handed to the operating system. Each is read once in
// a process and then only looked at.
//
// The extension table is filled and read on the engine's IO thread. The scheme table is read in on
// the thread that makes the first view, or a later one if there was nothing to read yet; any thread
// may look at it meanwhile. Neither has a lock. Both belong to the process.
#ifndef ORBCEFRESOURCETABLES_H
#define ORBCEFRESOURCETABLES_H

#include <map>
#include <string>

#include "include/cef_xml_reader.h"

namespace ORBCefResourceTables {

using MimeTypeMap = std::map<std::string, std::string>;
using UriSchemeMap = std::map<CefString, CefString>;

constexpr char kMimeTypesFile[] = "resources/ORBCefRsc/mime-types.xml";
constexpr char kUriSchemesFile[] = "resources/ORBCefRsc/uri-schemes.xml";
constexpr char kDefaultMimeType[] = "application/octet-stream";

// A reader of a file below the roots of the installation, null if there is none.
CefRefPtr<CefXmlReader> OpenResourceXml(const std::string& relative_path);

// Fill a table from a reader up to its end or its first error. The first entry for a key stays.
void ReadMimeTypes(CefRefPtr<CefXmlReader> reader, MimeTypeMap& types);
// A last `value` element without a later `description` keeps this function for good: the file must
// have the layout of the registry of URI schemes.
void ReadUriSchemes(CefRefPtr<CefXmlReader> reader, UriSchemeMap& schemes);

// Fill the process's tables from the files of the installation; a missing file leaves them empty.
void LoadMimeTypes();
// Does nothing if the table has entries.
void LoadUriSchemes();

// `extension` with its dot. Loads the table if it is empty.
std::string MimeTypeForExtension(const std::string& extension);

const UriSchemeMap& UriSchemeTable();

}  // namespace ORBCefResourceTables

#endif  // ORBCEFRESOURCETABLES_H
