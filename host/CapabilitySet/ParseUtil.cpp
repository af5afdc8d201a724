#include "CapabilitySet/ParseUtil.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <libxml/parser.h>
#include <mutex>

#include "Base/DeviceText.h"

namespace CapabilitySet {
namespace detail {

namespace {
void silence(void*, const char*, ...) {}
} // namespace

XmlDoc::XmlDoc(const std::string& text)
{
    static std::once_flag s_once;
    std::call_once(s_once, [] {
        xmlInitParser();
        xmlSetGenericErrorFunc(nullptr, silence);
    });
    if (text.empty() || text.size() > size_t(INT_MAX))
        return;
    m_doc = xmlReadMemory(text.data(), int(text.size()), "device.xml", nullptr,
        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOCDATA);
    if (m_doc && (m_doc->intSubset || m_doc->extSubset)) {
        // Devices never send a DTD; one here can only mean entity tricks.
        xmlFreeDoc(m_doc);
        m_doc = nullptr;
    }
}

XmlDoc::~XmlDoc()
{
    if (m_doc)
        xmlFreeDoc(m_doc);
}

xmlNodePtr XmlDoc::root(const char* name) const
{
    if (!m_doc)
        return nullptr;
    xmlNodePtr r = xmlDocGetRootElement(m_doc);
    if (!r || xmlStrcmp(r->name, reinterpret_cast<const xmlChar*>(name)) != 0)
        return nullptr;
    return r;
}

xmlNodePtr child(xmlNodePtr parent, const char* name)
{
    if (!parent)
        return nullptr;
    for (xmlNodePtr c = parent->children; c; c = c->next)
        if (c->type == XML_ELEMENT_NODE && xmlStrcmp(c->name, reinterpret_cast<const xmlChar*>(name)) == 0)
            return c;
    return nullptr;
}

std::vector<xmlNodePtr> children(xmlNodePtr parent, const char* name)
{
    std::vector<xmlNodePtr> out;
    if (!parent)
        return out;
    for (xmlNodePtr c = parent->children; c; c = c->next)
        if (c->type == XML_ELEMENT_NODE && xmlStrcmp(c->name, reinterpret_cast<const xmlChar*>(name)) == 0)
            out.push_back(c);
    return out;
}

std::string text(xmlNodePtr node)
{
    std::string out;
    if (!node)
        return out;
    // Only direct text: entity references are never expanded.
    for (xmlNodePtr c = node->children; c; c = c->next)
        if ((c->type == XML_TEXT_NODE || c->type == XML_CDATA_SECTION_NODE) && c->content)
            out += reinterpret_cast<const char*>(c->content);
    return Base::DeviceText(std::move(out));
}

std::string childText(xmlNodePtr parent, const char* name)
{
    return text(child(parent, name));
}

bool toInt(const std::string& s, int& out)
{
    size_t a = s.find_first_not_of(" \t\r\n");
    size_t b = s.find_last_not_of(" \t\r\n");
    if (a == std::string::npos)
        return false;
    const std::string t = s.substr(a, b - a + 1);
    errno = 0;
    char* end = nullptr;
    const long long v = std::strtoll(t.c_str(), &end, 10);
    if (errno != 0 || end != t.c_str() + t.size() || v < INT_MIN || v > INT_MAX)
        return false;
    out = int(v);
    return true;
}

bool childInt(xmlNodePtr parent, const char* name, int& out)
{
    xmlNodePtr c = child(parent, name);
    if (!c)
        return true;
    return toInt(text(c), out);
}

bool childBool(xmlNodePtr parent, const char* name, bool& out)
{
    xmlNodePtr c = child(parent, name);
    if (!c)
        return true;
    const std::string t = text(c);
    if (t == "true" || t == "1") {
        out = true;
        return true;
    }
    if (t == "false" || t == "0") {
        out = false;
        return true;
    }
    return false;
}

std::string xmlEscape(const std::string& s)
{
    std::string out;
    out.reserve(s.size());
    for (char c : s) {
        switch (c) {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&apos;"; break;
        default: out += c;
        }
    }
    return out;
}

nlohmann::json parseJson(const std::string& text, int maxDepth)
{
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > maxDepth)
                return nlohmann::json(nlohmann::json::value_t::discarded);
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return nlohmann::json::parse(text, nullptr, false);
}

bool jsonString(const nlohmann::json& obj, const char* key, std::string& out)
{
    auto it = obj.find(key);
    if (it == obj.end() || it->is_null())
        return true;
    if (it->is_string()) {
        out = Base::DeviceText(it->get<std::string>());
        return true;
    }
    if (it->is_number_integer()) {
        out = std::to_string(it->get<long long>());
        return true;
    }
    return false;
}

bool jsonInt(const nlohmann::json& obj, const char* key, int& out)
{
    auto it = obj.find(key);
    if (it == obj.end() || it->is_null())
        return true;
    if (it->is_number_integer()) {
        if (it->is_number_unsigned() ? it->get<unsigned long long>() > (unsigned long long)INT_MAX
                                     : (it->get<long long>() < INT_MIN || it->get<long long>() > INT_MAX))
            return false;
        out = it->get<int>();
        return true;
    }
    if (it->is_string())
        return toInt(it->get<std::string>(), out);
    return false;
}

bool jsonFloat(const nlohmann::json& obj, const char* key, float& out)
{
    auto it = obj.find(key);
    if (it == obj.end() || it->is_null())
        return true;
    if (!it->is_number())
        return false;
    const double v = it->get<double>();
    if (!std::isfinite(v) || std::fabs(v) > 1e30)
        return false;
    out = float(v);
    return true;
}

} // namespace detail
} // namespace CapabilitySet
