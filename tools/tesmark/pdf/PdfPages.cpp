#include "pdf/PdfPages.h"

#include <algorithm>
#include <array>

#include "pdf/PdfFailure.h"
#include "pdf/PdfPage.h"

namespace {

constexpr int kDeepestTree = 100;

[[noreturn]] void ThrowTreeDamaged() {
    throw CPdfFailure(StampError::kDamaged, "The PDF is damaged: its page tree can't be followed.");
}

// A node on the way down with what its page inherits.
struct Node {
    QPDFObjectHandle object;
    QPDFObjectHandle mediaBox;
    QPDFObjectHandle cropBox;
    QPDFObjectHandle rotate;
};

void Inherit(QPDFObjectHandle& value, QPDFObjectHandle own) {
    if (!own.isNull()) value = own;
}

Node Descend(const Node& parent, QPDFObjectHandle kid) {
    if (!kid.isDictionary() || !kid.isIndirect()) ThrowTreeDamaged();
    Node node = parent;
    node.object = kid;
    Inherit(node.mediaBox, kid.getKey("/MediaBox"));
    Inherit(node.cropBox, kid.getKey("/CropBox"));
    Inherit(node.rotate, kid.getKey("/Rotate"));
    return node;
}

bool IsLeaf(QPDFObjectHandle node) { return !node.getKey("/Kids").isArray(); }

int LeafCount(QPDFObjectHandle node) {
    if (!node.isDictionary()) ThrowTreeDamaged();
    if (IsLeaf(node)) return 1;
    auto count = node.getKey("/Count");
    if (!count.isInteger() || count.getIntValue() < 0 || count.getIntValue() > 0x7FFFFFFF) {
        ThrowTreeDamaged();
    }
    return count.getIntValueAsInt();
}

// The kid that holds the leaf `index` (from 0), which becomes the leaf's index in that kid.
QPDFObjectHandle KidWith(QPDFObjectHandle node, int& index) {
    auto kids = node.getKey("/Kids");
    // A flat list: no need to look at the kids before.
    if (kids.getArrayNItems() == LeafCount(node)) {
        auto kid = kids.getArrayItem(index);
        if (!kid.isDictionary()) ThrowTreeDamaged();
        if (IsLeaf(kid)) {
            index = 0;
            return kid;
        }
    }
    for (int i = 0; i < kids.getArrayNItems(); ++i) {
        auto kid = kids.getArrayItem(i);
        const int count = LeafCount(kid);
        if (index < count) return kid;
        index -= count;
    }
    ThrowTreeDamaged();
}

Node FindLeaf(CPdfBase& base, int index) {
    const auto null = QPDFObjectHandle::newNull();
    Node node = Descend({null, null, null, null}, base.Catalog().getKey("/Pages"));
    for (int depth = 0; depth < kDeepestTree; ++depth) {
        if (IsLeaf(node.object)) {
            if (index != 0 || depth == 0) ThrowTreeDamaged();
            return node;
        }
        node = Descend(node, KidWith(node.object, index));
    }
    ThrowTreeDamaged();
}

struct Box {
    double left, bottom, right, top;
};

bool ReadBox(QPDFObjectHandle array, Box& box) {
    if (!array.isRectangle()) return false;
    auto rectangle = array.getArrayAsRectangle();
    box = {std::min(rectangle.llx, rectangle.urx), std::min(rectangle.lly, rectangle.ury),
           std::max(rectangle.llx, rectangle.urx), std::max(rectangle.lly, rectangle.ury)};
    return box.right > box.left && box.top > box.bottom;
}

Box VisibleBox(const Node& leaf) {
    Box media;
    Box crop;
    if (!ReadBox(leaf.mediaBox, media)) {
        throw CPdfFailure(StampError::kDamaged, "The PDF is damaged: the page has no size.");
    }
    if (!ReadBox(leaf.cropBox, crop)) return media;
    const Box both = {std::max(media.left, crop.left), std::max(media.bottom, crop.bottom),
                      std::min(media.right, crop.right), std::min(media.top, crop.top)};
    return both.right > both.left && both.top > both.bottom ? both : media;
}

int Rotation(QPDFObjectHandle rotate) {
    if (!rotate.isNumber()) return 0;
    const double degrees = rotate.getNumericValue();
    if (!(degrees > -1e6 && degrees < 1e6)) return 0;
    const int whole = static_cast<int>(degrees);
    return whole % 90 ? 0 : (whole % 360 + 360) % 360;
}

PageGeometry GeometryOf(const Node& leaf) {
    const Box box = VisibleBox(leaf);
    PageGeometry geometry{box.left, box.bottom, box.right, box.top, Rotation(leaf.rotate), 1};
    auto unit = QPDFObjectHandle(leaf.object).getKey("/UserUnit");
    if (unit.isNumber() && unit.getNumericValue() > 0) geometry.userUnit = unit.getNumericValue();
    return geometry;
}

}  // namespace

int CPageNumbers::Of(QPDFObjectHandle page) {
    const QPDFObjGen root = m_base.Catalog().getKey("/Pages").getObjGen();
    long long before = 0;
    for (int depth = 0; depth < kDeepestTree && page.isDictionary() && page.isIndirect(); ++depth) {
        if (page.getObjGen() == root) {
            return depth > 0 && before < PdfPageCount(m_base) ? static_cast<int>(before) + 1 : 0;
        }
        auto parent = page.getKey("/Parent");
        if (!parent.isDictionary() || !parent.isIndirect()) return 0;
        const long long here = PagesBefore(parent, page.getObjGen());
        if (here < 0) return 0;
        before += here;
        page = parent;
    }
    return 0;
}

// How many pages stand before `kid` below `node`; negative if it isn't one of its kids.
long long CPageNumbers::PagesBefore(QPDFObjectHandle node, QPDFObjGen kid) {
    auto list = node.getKey("/Kids");
    if (!list.isArray()) return -1;
    const auto [at, isNew] = m_nodes.try_emplace(node.getObjGen());
    Kids& kids = at->second;
    if (isNew) kids.flat = list.getArrayNItems() == LeafCount(node);
    const auto known = kids.pagesBefore.find(kid);
    if (known != kids.pagesBefore.end()) return known->second;
    for (; kids.next < list.getArrayNItems() && m_kidsLeft > 0; --m_kidsLeft) {
        if (kids.next > 0) {
            kids.pages += kids.flat ? 1 : LeafCount(list.getArrayItem(kids.next - 1));
        }
        const auto item = list.getArrayItem(kids.next++).getObjGen();
        // Most lists rise.
        kids.pagesBefore.emplace_hint(kids.pagesBefore.end(), item, kids.pages);
        if (item == kid) return kids.pages;
    }
    return -1;
}

int PdfPageCount(CPdfBase& base) {
    auto root = base.Catalog().getKey("/Pages");
    if (!root.isDictionary() || IsLeaf(root)) ThrowTreeDamaged();
    return LeafCount(root);
}

PdfPage FindPdfPage(CPdfBase& base, int number) {
    PdfPage found;
    found.pageCount = PdfPageCount(base);
    const long long index = number < 0 ? found.pageCount + std::int64_t{number} : number - 1LL;
    if (number == 0 || index < 0 || index >= found.pageCount) {
        throw CPdfFailure(StampError::kNoSuchPage,
                          "There is no page " + std::to_string(number) + ": the PDF has " +
                              std::to_string(found.pageCount) +
                              (found.pageCount == 1 ? " page." : " pages."));
    }
    const Node leaf = FindLeaf(base, static_cast<int>(index));
    found.page = leaf.object;
    found.number = static_cast<int>(index) + 1;
    found.geometry = GeometryOf(leaf);
    return found;
}

StampError MeasurePdfPage(const std::string& path, int page, PdfPageSize& size,
                          std::string& message) {
    size = {};
    return ResultOf(
        [&] {
            CPdfBase base(path);
            size.pageCount = PdfPageCount(base);
            const PdfPage found = FindPdfPage(base, page);
            base.CheckWhatWasRead();
            size = {found.number, found.pageCount, VisibleWidthMm(found.geometry),
                    VisibleHeightMm(found.geometry)};
        },
        message);
}
