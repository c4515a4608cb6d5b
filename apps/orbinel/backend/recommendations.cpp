#include "apps/orbinel/backend/recommendations.hpp"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "apps/orbinel/backend/category_filter.hpp"
#include "apps/orbinel/backend/json_writing.hpp"
#include "apps/orbinel/backend/payload_reader.hpp"
#include "apps/orbinel/decode/json_text.hpp"

namespace orbinel::tool {
namespace {

/// The parameters of a URL.
class Query {
public:
    explicit Query(const std::string& text)
        : parameters_(
              g_uri_parse_params(text.data(), static_cast<gssize>(text.size()), "&", G_URI_PARAMS_NONE, nullptr),
              g_hash_table_unref) {}

    [[nodiscard]] bool isReadable() const { return parameters_ != nullptr; }

    /// Empty where it is missing, blank, or a placeholder that was not filled in.
    [[nodiscard]] std::string find(const char* name) const {
        const auto* value = static_cast<const char*>(g_hash_table_lookup(parameters_.get(), name));
        const std::string text = value == nullptr ? "" : value;
        const bool unfilled = text.find("{category}") != std::string::npos || text == "{productID}" ||
                              text == "{currency}" || text == "{language}";
        return unfilled || text.find_first_not_of(' ') == std::string::npos ? std::string() : text;
    }

private:
    std::unique_ptr<GHashTable, void (*)(GHashTable*)> parameters_;
};

using Texts = std::vector<std::string>;

bool contains(const Texts& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

Texts textsOf(const rapidjson::Value& list) {
    Texts texts;
    for (const auto& element : list.GetArray()) {
        if (element.IsString()) texts.push_back(textOf(element));
    }
    return texts;
}

/// The member's text or texts.
Texts textsOf(const rapidjson::Value& object, const char* name) {
    PayloadReader reader(object);
    if (const auto* list = reader.list(name)) return textsOf(*list);
    auto text = reader.text(name);
    return text.empty() ? Texts() : Texts{std::move(text)};
}

Texts splitAtCommas(const std::string& text) {
    Texts parts;
    gchar** words = g_strsplit(text.c_str(), ",", -1);
    for (gchar** word = words; *word != nullptr; ++word) parts.emplace_back(*word);
    g_strfreev(words);
    return parts;
}

/// A JSON list of names; blank ones choose nothing.
std::optional<Texts> readCategories(const std::string& text) {
    if (text.empty()) return Texts();
    const auto parsed = parseJson(text);
    const auto* list = std::get_if<rapidjson::Document>(&parsed);
    if (list == nullptr || !list->IsArray()) return std::nullopt;
    auto categories = textsOf(*list);
    std::erase_if(categories, [](const std::string& name) { return name.find_first_not_of(' ') == std::string::npos; });
    return categories;
}

struct Choice {
    std::optional<Texts> campaignProducts;  // absent: all
    std::string currency;
    CategoryFilter filter;
    CategoryFilter categories;
    Texts lookedAt;  // nobody is recommended what she is looking at

    [[nodiscard]] bool holds(const rapidjson::Value& product) const {
        if (!product.IsObject()) return false;
        PayloadReader reader(product);
        const auto id = reader.text("product_id");
        const auto ofCategories = textsOf(product, "category");
        return (!campaignProducts || contains(*campaignProducts, id)) && !contains(lookedAt, id) &&
               (currency.empty() || currency == reader.text("currency")) && filter.holds(ofCategories) &&
               categories.holds(ofCategories);
    }
};

Reply chosenProducts(const rapidjson::Value* products, const Choice& choice) {
    std::size_t count = 0;
    auto body = jsonOf([&](JsonWriter& writer) {
        writer.StartObject();
        writer.Key("data");
        writer.StartArray();
        for (rapidjson::SizeType i = 0; products != nullptr && i < products->Size(); ++i) {
            if (!choice.holds((*products)[i])) continue;
            (*products)[i].Accept(writer);
            ++count;
        }
        writer.EndArray();
        writer.EndObject();
    });
    return {200, std::move(body), {}, std::to_string(count) + (count == 1 ? " product" : " products"), {}};
}

const rapidjson::Value* campaignOf(PayloadReader& file, const std::string& id) {
    const auto* campaigns = file.object("campaigns");
    return campaigns == nullptr ? nullptr : PayloadReader(*campaigns).object(id.c_str());
}

}  // namespace

Reply recommend(const std::string& query, const std::string& file) {
    const Query asked(query);
    if (!asked.isReadable()) return refusal(400, "the parameters of the URL cannot be read");
    const auto parsed = parseJson(file);
    const auto* document = std::get_if<rapidjson::Document>(&parsed);
    if (document == nullptr) return refusal(404, "there are no campaigns");
    PayloadReader reader(*document);
    const auto id = asked.find("id");
    const auto* campaign = campaignOf(reader, id);
    if (campaign == nullptr) return refusal(404, "there is no campaign \"" + shortened(id, 40) + "\"");

    const auto filter = readCategoryFilter(asked.find("filter"));
    if (!filter) return refusal(400, "\"filter\" is not of the form [category][=][NAME]*…, with = or !=");
    auto categories = readCategories(asked.find("categories"));
    if (!categories) return refusal(400, "\"categories\" is not a JSON list");

    Choice choice{
        {}, asked.find("currency"), *filter, {*std::move(categories), {}}, splitAtCommas(asked.find("product"))};
    if (PayloadReader(*campaign).list("products") != nullptr) choice.campaignProducts = textsOf(*campaign, "products");
    auto reply = chosenProducts(reader.list("products"), choice);
    reply.note.insert(0, "campaign " + shortened(id, 40) + ", ");
    return reply;
}

}  // namespace orbinel::tool
