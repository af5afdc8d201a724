#pragma once
// Internal helpers of the document readers. XML is read by libxml2 without
// network access, entity substitution or DTD loading, and a document that
// declares a DTD is refused outright; JSON by nlohmann-json without
// exceptions. Numbers are range-checked: bad text makes a read fail, never
// crash or read past the given string.
#include <cstdint>
#include <libxml/tree.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace CapabilitySet {
namespace detail {

class XmlDoc final {
public:
    explicit XmlDoc(const std::string& text);
    ~XmlDoc();
    XmlDoc(const XmlDoc&) = delete;
    XmlDoc& operator=(const XmlDoc&) = delete;
    // The root element when it has this name (namespace ignored); null otherwise.
    xmlNodePtr root(const char* name) const;

private:
    xmlDocPtr m_doc = nullptr;
};

xmlNodePtr child(xmlNodePtr parent, const char* name);
std::vector<xmlNodePtr> children(xmlNodePtr parent, const char* name);
std::string text(xmlNodePtr node);
std::string childText(xmlNodePtr parent, const char* name);
// Absent child: true with def kept. Present but not a number in range: false.
bool childInt(xmlNodePtr parent, const char* name, int& out);
bool childBool(xmlNodePtr parent, const char* name, bool& out);
bool toInt(const std::string& s, int& out);

std::string xmlEscape(const std::string& s);

// Parses JSON, refusing nesting deeper than maxDepth; discarded on failure.
nlohmann::json parseJson(const std::string& text, int maxDepth = 32);
bool jsonString(const nlohmann::json& obj, const char* key, std::string& out);  // absent: true
bool jsonInt(const nlohmann::json& obj, const char* key, int& out);             // absent: true
bool jsonFloat(const nlohmann::json& obj, const char* key, float& out);         // absent: true

} // namespace detail
} // namespace CapabilitySet
