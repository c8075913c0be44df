#include "pdf/WidgetPages.h"

#include <map>
#include <set>

#include "pdf/PdfFailure.h"
#include "pdf/PdfKey.h"

namespace {

constexpr int kDeepestTree = 100;
constexpr int kMostEntries = 5'000'000;

struct Listing {
    int page = 0;  // the last one
    int pages = 0;
};
using Listings = std::map<QPDFObjGen, Listing>;

bool IsCalledPage(QPDFObjectHandle node) {
    auto type = node.getKey("/Type");
    return type.isName() && type.getName() == "/Page";
}

bool HasArea(const std::array<double, 4>& rectangle) {
    return rectangle[2] > rectangle[0] && rectangle[3] > rectangle[1];
}

QPDFObjGen WidgetOf(const PdfSignature& signature) {
    return QPDFObjGen(signature.widget, signature.widgetGeneration);
}

// Notes where the widgets of `listings` are listed.
class CPageWalk {
public:
    explicit CPageWalk(Listings& listings) : m_listings(listings) {}

    // false: readers wouldn't agree on what stands below.
    bool Follow(QPDFObjectHandle node, int depth = 0) {
        if (!node.isDictionary() || !node.isIndirect() || depth > kDeepestTree || !Spend()) {
            return false;
        }
        auto kids = node.getKey("/Kids");
        if (kids.isNull()) return NotePage(node);
        if (!kids.isArray() || IsCalledPage(node) || !m_nodes.insert(node.getObjGen()).second) {
            return false;
        }
        for (int i = 0; i < kids.getArrayNItems(); ++i) {
            if (!Follow(kids.getArrayItem(i), depth + 1)) return false;
        }
        return true;
    }

private:
    bool Spend() { return m_entriesLeft-- > 0; }

    bool NotePage(QPDFObjectHandle page) {
        ++m_page;
        auto annotations = page.getKey("/Annots");
        if (!annotations.isArray()) return true;
        for (int i = 0; i < annotations.getArrayNItems(); ++i) {
            if (!Spend()) return false;
            const auto at = m_listings.find(annotations.getArrayItem(i).getObjGen());
            if (at == m_listings.end() || at->second.page == m_page) continue;
            ++at->second.pages;
            at->second.page = m_page;
        }
        return true;
    }

    Listings& m_listings;
    std::set<QPDFObjGen> m_nodes;
    int m_page = 0;
    int m_entriesLeft = kMostEntries;
};

// A page that can't be read is no reason to refuse what was read without it.
bool FollowPages(CPdfBase& base, Listings& listings) {
    base.CheckWhatWasRead();
    const bool followed = CPageWalk(listings).Follow(base.Catalog().getKey("/Pages"));
    try {
        base.CheckWhatWasRead();
    } catch (const CPdfFailure&) {
        return false;
    }
    return followed;
}

void Settle(PdfSignature& signature, const Listing& listing) {
    if (listing.pages == 1) signature.page = listing.page;
    if (listing.pages > 1) signature.widget = 0;
}

}  // namespace

int CWidgetPages::PageOf(QPDFObjectHandle widget, const std::array<double, 4>& rectangle) {
    auto page = KeyOf(widget, "/P");
    if (HasArea(rectangle) && !Lists(page, widget.getObjGen())) return 0;
    return m_numbers.Of(page);
}

bool CWidgetPages::Lists(QPDFObjectHandle page, QPDFObjGen widget) {
    auto annotations = KeyOf(page, "/Annots");
    if (!annotations.isArray()) return false;
    for (int i = 0; i < annotations.getArrayNItems() && m_itemsLeft > 0; ++i, --m_itemsLeft) {
        auto item = annotations.getArrayItem(i);
        if (item.isIndirect() && item.getObjGen() == widget) return true;
    }
    return false;
}

void CheckPages(CPdfBase& base, std::vector<PdfSignature>& signatures) {
    Listings listings;
    for (const PdfSignature& signature : signatures) {
        if (signature.widget != 0) listings.try_emplace(WidgetOf(signature));
    }
    if (listings.empty()) return;
    const bool followed = FollowPages(base, listings);
    for (PdfSignature& signature : signatures) {
        if (signature.widget == 0) continue;
        if (followed) {
            Settle(signature, listings[WidgetOf(signature)]);
        } else {
            signature.widget = 0;
        }
    }
}
