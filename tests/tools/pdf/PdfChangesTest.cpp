// What of a signed PDF a further signature may change, and what is told as another change.
#include "pdf/PdfChanges.h"

#include "pdf/PdfSignatures.h"
#include "tools/PdfsigSigner.h"
#include "tools/pdf/PdfFixture.h"

namespace {

using Objects = std::map<int, std::string>;

std::string Stream(const std::string& data, const std::string& entries = "") {
    return "<< /Length " + std::to_string(data.size()) + " " + entries + " >>\nstream\n" + data +
           "\nendstream";
}

// An update with these objects, all of the generation `generation`.
std::string Updated(const std::string& pdf, const Objects& objects, const std::string& trailer = "",
                    int generation = 0) {
    std::string update = pdf;
    std::string table;
    for (const auto& [number, body] : objects) {
        char line[64];
        std::snprintf(line, sizeof line, "%d 1\n%010zu %05d n\r\n", number, update.size(),
                      generation);
        table += line;
        update += std::to_string(number) + " " + std::to_string(generation) + " obj\n" + body +
                  "\nendobj\n";
    }
    const std::string xref = std::to_string(update.size());
    const auto previous = pdf.substr(pdf.rfind("startxref\n") + 10);
    return update + "xref\n" + table + "trailer\n<< /Size 90 /Root 1 0 R /Prev " +
           previous.substr(0, previous.find('\n')) + " " + trailer + " >>\nstartxref\n" + xref +
           "\n%%EOF\n";
}

// A signature's dictionary whose range SignedUpdate fills in.
const std::string kSignature =
    "<< /Type /Sig /Filter /Adobe.PPKLite /SubFilter /adbe.pkcs7.detached "
    "/ByteRange [0 AAAAAAAA BBBBBBBB CCCCCCCC] /Contents <30030201050000> >>";

// An update that holds kSignature as one of its objects: what is signed doesn't matter here.
std::string SignedUpdate(const std::string& pdf, const Objects& objects,
                         const std::string& trailer = "") {
    std::string update = Updated(pdf, objects, trailer);
    const auto gap = update.find("<3003", pdf.size());
    const auto end = update.find('>', gap) + 1;
    const auto set = [&](const char* word, std::size_t number) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%08zu", number);
        update.replace(update.find(word, pdf.size()), 8, digits);
    };
    set("AAAAAAAA", gap);
    set("BBBBBBBB", end);
    set("CCCCCCCC", update.size() - end);
    return update;
}

std::string Widget(const std::string& name, const std::string& value,
                   const std::string& more = "") {
    return "<< /Type /Annot /Subtype /Widget /FT /Sig /T (" + name + ") /V " + value +
           " /Rect [0 0 9 9] /P 3 0 R " + more + " >>";
}

class PdfChangesTest : public PdfFixture {
protected:
    // Objects: 1 catalog, 2 pages, 3 page, 4 its content, 5 font; form fields 6 and annotations 7
    // are arrays of their own with the signed field 8, whose value is 9. `more` begins at 10.
    static std::string Signed(const std::string& page = "", const std::string& catalog = "",
                              const std::vector<std::string>& more = {}, const Objects& other = {},
                              const std::string& trailer = "") {
        std::vector<std::string> bodies = {
            "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields 6 0 R /SigFlags 3 >> " + catalog +
                " >>",
            "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 595 842] >>",
            "<< /Type /Page /Parent 2 0 R /Annots 7 0 R " +
                (page.empty() ? std::string("/Contents 4 0 R") : page) + " >>",
            Stream("BT ET"),
            "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
            "[8 0 R]",
            "[8 0 R]",
            Widget("First", "9 0 R"),
            "null"};
        bodies.insert(bodies.end(), more.begin(), more.end());
        for (const auto& [number, body] : other) bodies.at(number - 1) = body;
        return SignedUpdate(PdfOf(bodies, trailer), {{9, kSignature}}, trailer);
    }

    // What an honest second signature brings: field 20 with its value 21. `objects` win.
    static std::string Again(const std::string& pdf, const Objects& objects = {},
                             const std::string& trailer = "") {
        Objects all = objects;
        all.merge(Objects{{6, "[8 0 R 20 0 R]"},
                          {7, "[8 0 R 20 0 R]"},
                          {20, Widget("Second", "21 0 R")},
                          {21, kSignature}});
        return SignedUpdate(pdf, all, trailer);
    }

    // Behind the first signature.
    std::vector<int> Altered(const std::string& pdf) const {
        const auto found = Read(pdf);
        if (found.list.empty()) {
            ADD_FAILURE() << "no signature was found";
            return {-1};
        }
        EXPECT_EQ(found.list[0].problem, RangeProblem::kNone);
        EXPECT_TRUE(found.list[0].after.compared);
        return found.list[0].after.altered;
    }

    // The second signature is found too, and so would be answered for.
    std::vector<int> AlteredBetween(const std::string& pdf) const {
        const auto found = Read(pdf);
        EXPECT_GE(found.list.size(), 2u);
        EXPECT_TRUE(!found.list.empty() && found.list[0].after.signature);
        return Altered(pdf);
    }

    const std::vector<int> m_nothing;
};

TEST_F(PdfChangesTest, AnHonestSecondSignatureIsNoOtherChange) {
    EXPECT_EQ(AlteredBetween(Again(Signed())), m_nothing);
}

TEST_F(PdfChangesTest, WhatTheSignedPartReferredToInVainMayNotCome) {
    const auto list = Signed("/Contents [4 0 R 30 0 R]");
    EXPECT_EQ(AlteredBetween(Again(list, {{30, Stream("evil")}})), std::vector<int>{30});
    const auto entry = Signed("/Contents 4 0 R /Resources << /XObject << /X 30 0 R >> >>");
    EXPECT_EQ(AlteredBetween(Again(entry, {{30, Stream("evil")}})), std::vector<int>{30});
    EXPECT_EQ(AlteredBetween(Again(entry, {{31, Stream("unused")}})), m_nothing);
}

TEST_F(PdfChangesTest, AnotherGenerationOfAnObjectIsAChangeOfIt) {
    EXPECT_EQ(Altered(Updated(Signed(), {{4, Stream("evil")}}, "", 1)), std::vector<int>{4});
}

TEST_F(PdfChangesTest, AContentIsNoMetadataWhateverItCallsItself) {
    const std::string type = "/Type /Metadata /Subtype /XML";
    const auto pdf = Signed("", "", {}, {{4, Stream("BT ET", type)}});
    EXPECT_EQ(AlteredBetween(Again(pdf, {{4, Stream("evil", type)}})), std::vector<int>{4});
    const auto both = Signed("", "/Metadata 4 0 R", {}, {{4, Stream("BT ET", type)}});
    EXPECT_EQ(AlteredBetween(Again(both, {{4, Stream("evil", type)}})), std::vector<int>{4});
}

TEST_F(PdfChangesTest, TheCatalogsMetadataMayBeRenewedAndStaysMetadata) {
    const std::string type = "/Type /Metadata /Subtype /XML";
    const auto pdf = Signed("", "/Metadata 10 0 R", {Stream("<x/>", type)});
    EXPECT_EQ(AlteredBetween(Again(pdf, {{10, Stream("<y/>", type)}})), m_nothing);
    EXPECT_EQ(AlteredBetween(Again(pdf, {{10, Stream("<y/>", "/Subtype /Form")}})),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, TheDocumentsInformationMayBeRenewed) {
    const std::string trailer = "/Info 10 0 R";
    const auto pdf = Signed("", "", {"<< /Title (One) >>"}, {}, trailer);
    EXPECT_EQ(AlteredBetween(Again(
                  pdf, {{10, "<< /Title (Two) /ModDate (D:2026) /Trapped /False >>"}}, trailer)),
              m_nothing);
    EXPECT_EQ(AlteredBetween(Again(pdf, {{10, "<< /Title 4 0 R >>"}}, trailer)),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, WhatIsMoreThanInformationMayNot) {
    const auto pages = Signed("", "", {}, {}, "/Info 2 0 R");
    EXPECT_EQ(AlteredBetween(Again(pages,
                                   {{2, "<< /Type /Pages /Kids [30 0 R] /Count 1 >>"},
                                    {30, "<< /Type /Page /Parent 2 0 R >>"}},
                                   "/Info 2 0 R")),
              std::vector<int>{2});
    const auto texts =
        Signed("/Contents 4 0 R /PieceInfo 10 0 R", "", {"<< /Title (One) >>"}, {}, "/Info 10 0 R");
    EXPECT_EQ(AlteredBetween(Again(texts, {{10, "<< /Title (Two) >>"}}, "/Info 10 0 R")),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, EveryUnknownEntryOfTheTrailerIsAChange) {
    EXPECT_EQ(Altered(Updated(Signed(), {{40, "null"}}, "/Unknown 4 0 R")), std::vector<int>{1});
    EXPECT_EQ(Altered(Updated(Signed(), {{40, "null"}}, "/ID [(a) (b)]")), m_nothing);
}

TEST_F(PdfChangesTest, AnAnnotationIsNoFieldWhateverItCallsItself) {
    const std::string note =
        "<< /Type /Annot /Subtype /FreeText /FT /Sig /V 21 0 R /P 3 0 R /Rect [0 0 99 99] >>";
    EXPECT_EQ(AlteredBetween(Again(Signed(), {{7, "[8 0 R 20 0 R 30 0 R]"}, {30, note}})),
              std::vector<int>{7});
}

TEST_F(PdfChangesTest, AWidgetHasToBelongToAFurtherSignature) {
    const auto with = [&](const std::string& widget) {
        return AlteredBetween(Again(Signed(), {{7, "[8 0 R 20 0 R 30 0 R]"}, {30, widget}}));
    };
    EXPECT_EQ(with(Widget("Empty", "null")), std::vector<int>{7});
    EXPECT_EQ(with(Widget("Earlier", "9 0 R")), std::vector<int>{7});
    EXPECT_EQ(with(Widget("Twice", "21 0 R")), std::vector<int>{7});
    EXPECT_EQ(with(Widget("NoSignature", "5 0 R")), std::vector<int>{7});
}

TEST_F(PdfChangesTest, AWidgetThatActsOrTellsAnotherPageIsAChange) {
    EXPECT_EQ(AlteredBetween(Again(
                  Signed(), {{20, Widget("Second", "21 0 R", "/AA << /PO << /S /Named >> >>")}})),
              (std::vector<int>{6, 7}));
    const std::string elsewhere =
        "<< /Subtype /Widget /FT /Sig /T (S) /V 21 0 R /Rect [0 0 9 9] /P 2 0 R >>";
    EXPECT_EQ(AlteredBetween(Again(Signed(), {{20, elsewhere}})), std::vector<int>{7});
}

TEST_F(PdfChangesTest, AFieldMayHaveItsWidgetBelowIt) {
    const std::string field = "<< /FT /Sig /T (S) /V 21 0 R /Kids [22 0 R] >>";
    const std::string widget =
        "<< /Type /Annot /Subtype /Widget /Parent 20 0 R /Rect [0 0 9 9] /P 3 0 R >>";
    EXPECT_EQ(AlteredBetween(Again(Signed(), {{7, "[8 0 R 22 0 R]"}, {20, field}, {22, widget}})),
              m_nothing);
}

TEST_F(PdfChangesTest, OnlyTheListsOfFieldsAndWidgetsMayGrow) {
    const auto layers = Signed("", "/OCProperties << /OCGs [10 0 R] /D << /OFF 11 0 R >> >>",
                               {"<< /Type /OCG /Name (l) /FT /Sig >>", "[]"});
    EXPECT_EQ(AlteredBetween(Again(layers, {{11, "[10 0 R]"}})), std::vector<int>{11});
    EXPECT_EQ(AlteredBetween(Again(layers, {{11, "[20 0 R]"}})), std::vector<int>{11});
    const auto pages =
        Signed("", "", {"[3 0 R]"}, {{2, "<< /Type /Pages /Kids 10 0 R /Count 1 >>"}});
    EXPECT_EQ(AlteredBetween(Again(pages, {{10, "[3 0 R 30 0 R]"},
                                           {30, "<< /Type /Page /FT /Sig /Parent 2 0 R >>"}})),
              std::vector<int>{10});
    // The list is something else besides.
    const auto shared = Signed("/Contents 4 0 R /Other 7 0 R");
    EXPECT_EQ(AlteredBetween(Again(shared)), std::vector<int>{7});
}

TEST_F(PdfChangesTest, AnEmptyFieldKeepsItsLooksUnlessAFurtherSignatureFillsIt) {
    const auto pdf =
        Signed("", "", {Widget("Empty", "null")}, {{6, "[8 0 R 10 0 R]"}, {7, "[8 0 R 10 0 R]"}});
    const std::string looks = "/AP << /N 22 0 R >>";
    const std::string form = Stream("evil", "/Type /XObject /Subtype /Form /BBox [0 0 9 9]");
    const Objects lists = {{6, "[8 0 R 10 0 R 20 0 R]"}, {7, "[8 0 R 10 0 R 20 0 R]"}};
    Objects painted = {{10, Widget("Empty", "null", looks)}, {22, form}};
    painted.insert(lists.begin(), lists.end());
    EXPECT_EQ(AlteredBetween(Again(pdf, painted)), std::vector<int>{10});
    EXPECT_EQ(AlteredBetween(SignedUpdate(
                  pdf, {{10, Widget("Empty", "21 0 R", looks)}, {21, kSignature}, {22, form}})),
              m_nothing);
}

TEST_F(PdfChangesTest, AnEmptyFieldThatIsAPagesFontsTooMayNotBeFilled) {
    const auto pdf =
        Signed("/Contents 4 0 R /Resources << /Font 10 0 R >>", "",
               {"<< /Subtype /Widget /FT /Sig /T (E) /F 5 0 R >>"}, {{6, "[8 0 R 10 0 R]"}});
    EXPECT_EQ(AlteredBetween(SignedUpdate(
                  pdf, {{10, "<< /Subtype /Widget /FT /Sig /T (E) /F 30 0 R /V 21 0 R >>"},
                        {21, kSignature},
                        {30, "<< /Type /Font /Subtype /Type3 >>"}})),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, AnEncryptionThatCameLaterIsAChange) {
    // Of the empty password, with 40 bits.
    const std::string trailer =
        "/ID [<30313233343536373839616263646566> <30313233343536373839616263646566>] /Encrypt << "
        "/Filter /Standard /V 1 /R 2 /Length 40 /P -4 /O "
        "<2055c756c72e1ad702608e8196acad447ad32d17cff583235f6dd15fed7dab67> /U "
        "<a64e367000e34d42af67b3be5c91f5f87f252a369c6a874ea40a79129903a526> >>";
    EXPECT_EQ(Altered(Updated(Signed(), {{40, "null"}}, trailer)), std::vector<int>{1});
}

TEST_F(PdfChangesTest, AFormGetsNoOtherWayToShowItself) {
    const auto with = [&](const std::string& entries, const std::string& pdf) {
        return AlteredBetween(Again(
            pdf, {{1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields 6 0 R /SigFlags 3 " +
                          entries + " >> >>"}}));
    };
    EXPECT_EQ(with("/XFA (x)", Signed()), std::vector<int>{1});
    EXPECT_EQ(with("/NeedAppearances true", Signed()), std::vector<int>{1});
    const std::string defaults = "/DA (/F 0 Tf) /DR << /Font << /F 5 0 R >> >>";
    EXPECT_EQ(with(defaults, Signed()), m_nothing);
    // Here a text would take them.
    const auto text =
        Signed("", "", {"<< /Subtype /Widget /FT /Tx /T (t) /V (100) >>"}, {{6, "[8 0 R 10 0 R]"}});
    EXPECT_EQ(
        AlteredBetween(Again(text, {{1,
                                     "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields 6 0 R "
                                     "/SigFlags 3 " +
                                         defaults + " >> >>"},
                                    {6, "[8 0 R 10 0 R 20 0 R]"}})),
        std::vector<int>{1});
}

TEST_F(PdfChangesTest, ASecurityStoreMayComeAndGrow) {
    const std::string catalog =
        "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields 6 0 R /SigFlags 3 >> /DSS 30 0 R >>";
    EXPECT_EQ(AlteredBetween(Again(Signed(), {{1, catalog},
                                              {30, "<< /Type /DSS /Certs [31 0 R] >>"},
                                              {31, Stream("certificate")}})),
              m_nothing);
    const auto had = Signed("", "/DSS 10 0 R", {"<< /Certs 11 0 R >>", "[12 0 R]", Stream("c")});
    EXPECT_EQ(AlteredBetween(Again(had, {{10, "<< /Certs 11 0 R /CRLs [31 0 R] >>"},
                                         {11, "[12 0 R 31 0 R]"},
                                         {31, Stream("list")}})),
              m_nothing);
    EXPECT_EQ(AlteredBetween(Again(had, {{12, Stream("another")}})), std::vector<int>{12});
}

TEST_F(PdfChangesTest, ASecurityStoreMayHoldAllThatTheStandardAllows) {
    const auto had = Signed("", "/DSS 10 0 R",
                            {"<< /Type /DSS /Certs 11 0 R /VRI 12 0 R >>", "[13 0 R]",
                             "<< /A1B2 << /Cert [13 0 R] >> >>", Stream("c")});
    const Objects more = {
        {10, "<< /Type /DSS /Certs 11 0 R /VRI 12 0 R /OCSPs [31 0 R] /PBAD_PolicyArtifacts 32 >>"},
        {11, "[13 0 R 31 0 R]"},
        {12, "<< /A1B2 << /Cert [13 0 R] >> /C3D4 33 0 R >>"},
        {31, Stream("answer")},
        {33, "<< /Type /VRI /OCSP [31 0 R] /TU (D:20260101) >>"}};
    EXPECT_EQ(AlteredBetween(Again(had, more)), m_nothing);
    EXPECT_EQ(AlteredBetween(SignedUpdate(Again(had, more), {{10, "<< /Certs [13 0 R] >>"},
                                                             {6, "[8 0 R 20 0 R 40 0 R]"},
                                                             {7, "[8 0 R 20 0 R 40 0 R]"},
                                                             {40, Widget("Third", "41 0 R")},
                                                             {41, kSignature}})),
              m_nothing);
}

TEST_F(PdfChangesTest, ASecurityStoreTakesNothingElse) {
    const auto had = Signed("", "/DSS 10 0 R",
                            {"<< /Certs 11 0 R /VRI 12 0 R >>", "[13 0 R]", "<< >>", Stream("c")});
    const auto with = [&](int number, const std::string& body) {
        return AlteredBetween(Again(had, {{number, body}, {30, Stream("evil")}}));
    };
    EXPECT_EQ(with(10, "<< /Certs 11 0 R /VRI 12 0 R /Contents 30 0 R >>"), std::vector<int>{10});
    EXPECT_EQ(with(10, "<< /Certs 30 0 R /VRI 12 0 R >>"), std::vector<int>{10});
    EXPECT_EQ(with(10, "[30 0 R]"), std::vector<int>{10});
    EXPECT_EQ(with(11, "<< /Type /Page >>"), std::vector<int>{11});
    EXPECT_EQ(with(11, "[/Indexed]"), std::vector<int>{11});
    EXPECT_EQ(with(12, "<< /S /JavaScript /JS (x) >>"), std::vector<int>{12});
    EXPECT_EQ(with(12, "[13 0 R]"), std::vector<int>{12});
    EXPECT_EQ(AlteredBetween(Again(Signed(), {{1,
                                               "<< /Type /Catalog /Pages 2 0 R /AcroForm << "
                                               "/Fields 6 0 R /SigFlags 3 >> /DSS 3 0 R >>"}})),
              std::vector<int>{1});
}

TEST_F(PdfChangesTest, WhatAPageHoldsIsNoSecurityStoresThoughTheCatalogCallsThePageOne) {
    const auto changed = [&](const std::string& page, const std::string& before,
                             const std::string& now) {
        return AlteredBetween(
            Again(Signed(page, "/DSS 3 0 R", {before}), {{10, now}, {30, Stream("evil")}}));
    };
    EXPECT_EQ(changed("/Contents 10 0 R", "[4 0 R]", "[30 0 R]"), std::vector<int>{10});
    EXPECT_EQ(changed("/Contents 4 0 R /MediaBox 10 0 R", "[0 0 595 842]", "[0 0 1 1]"),
              std::vector<int>{10});
    EXPECT_EQ(changed("/Contents 4 0 R /Resources 10 0 R", "<< /Font << /F 5 0 R >> >>",
                      "<< /Font << /F 30 0 R >> >>"),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, ASecurityStoreThatIsResourcesTooIsNone) {
    const auto fonts = Signed("/Contents 4 0 R /Resources << /Font 10 0 R >>", "/DSS 10 0 R",
                              {"<< /VRI 11 0 R >>", "<< /Encoding << >> >>"});
    EXPECT_EQ(AlteredBetween(Again(fonts, {{11, "<< /Encoding << /Differences << >> >> >>"}})),
              std::vector<int>{11});
    const auto spaces = Signed("/Contents 4 0 R /Resources << /ColorSpace 10 0 R >>", "/DSS 10 0 R",
                               {"<< /Certs 11 0 R >>", "[4 0 R]"});
    EXPECT_EQ(AlteredBetween(Again(spaces, {{11, "[30 0 R]"}, {30, Stream("evil")}})),
              std::vector<int>{11});
}

TEST_F(PdfChangesTest, ACatalogThatIsSomethingElseTooNamesNoStoreFormOrMetadata) {
    const std::string type = "/Type /Metadata /Subtype /XML";
    const std::vector<std::string> more = {"<< /Certs 11 0 R >>", "[4 0 R]", Stream("<x/>", type)};
    const Objects update = {
        {11, "[4 0 R 30 0 R]"}, {12, Stream("<y/>", type)}, {30, Stream("certificate")}};
    const std::string catalog = "/DSS 10 0 R /Metadata 12 0 R";
    EXPECT_EQ(AlteredBetween(Again(Signed("", catalog, more), update)), m_nothing);
    const auto resources = Signed("/Contents 4 0 R /Resources << /Font 1 0 R >>", catalog, more);
    EXPECT_EQ(AlteredBetween(Again(resources, update)), (std::vector<int>{6, 11, 12}));
}

TEST_F(PdfChangesTest, AFormThatIsSomethingElseTooHasNoFieldsThatMayGrow) {
    const std::vector<std::string> form = {"<< /Fields 6 0 R /SigFlags 3 >>"};
    const Objects catalog = {{1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 10 0 R >>"}};
    EXPECT_EQ(AlteredBetween(Again(Signed("", "", form, catalog))), m_nothing);
    const std::string resources = "/Contents 4 0 R /Resources << /ColorSpace 10 0 R >>";
    EXPECT_EQ(AlteredBetween(Again(Signed(resources, "", form, catalog))), std::vector<int>{6});
    const Objects store = {{1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 10 0 R /DSS 10 0 R >>"}};
    EXPECT_EQ(AlteredBetween(Again(Signed("", "", form, store))), std::vector<int>{6});
}

TEST_F(PdfChangesTest, AStreamThatIsReferredToIsNoTrailer) {
    const auto pdf = Signed("/Contents 4 0 R /Resources << /Properties 10 0 R >>", "",
                            {Stream("", "/Type /XRef /Info 11 0 R"), "<< /ActualText (10) >>"});
    EXPECT_EQ(AlteredBetween(Again(pdf, {{11, "<< /ActualText (999999) >>"}})),
              std::vector<int>{11});
}

// Some readers look at an object's number alone.
TEST_F(PdfChangesTest, AReferenceOfAnotherGenerationCountsToo) {
    const auto store =
        Signed("/Contents 11 1 R", "/DSS 10 0 R", {"<< /Certs 11 0 R >>", "[4 0 R]"});
    EXPECT_EQ(AlteredBetween(Again(store, {{11, "[30 0 R]"}, {30, Stream("evil")}})),
              std::vector<int>{11});
    const auto page =
        Signed("/Contents 4 0 R /PieceInfo 10 1 R", "", {"<< /Title (One) >>"}, {}, "/Info 10 0 R");
    EXPECT_EQ(AlteredBetween(Again(page, {{10, "<< /Title (Two) >>"}}, "/Info 10 0 R")),
              std::vector<int>{10});
}

TEST_F(PdfChangesTest, ACatalogThatIsSomethingElseTooMayNotGrow) {
    const auto pdf = Signed("/Contents 4 0 R /Resources << /ExtGState 1 0 R >>");
    EXPECT_EQ(
        AlteredBetween(Again(pdf, {{1,
                                    "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields 6 0 R "
                                    "/SigFlags 3 >> /DSS << /ca 0 >> >>"}})),
        (std::vector<int>{1, 6}));
}

TEST_F(PdfChangesTest, TwoSignaturesOfPdfsigOnBothKindsOfTables) {
    WriteFile(Path("plain.pdf"), SimplePdf());
    RunCommand({"qpdf", "--object-streams=generate", Path("plain.pdf"), Path("packed.pdf")});
    for (const char* name : {"plain.pdf", "packed.pdf"}) {
        SignByPdfsig(m_folder, name);
        ProgramOptions options;
        options.folder = m_folder;
        RunProgram({"/usr/bin/pdfsig", "-nssdir", "sql:.", "-add-signature", "-nick", "other",
                    "-new-signature-field-name", "Again", "other.pdf", "both.pdf"},
                   options);
        EXPECT_EQ(AlteredBetween(ReadFile(Path("both.pdf"))), m_nothing) << name;
        for (const char* file : {"other.pdf", "both.pdf", "key.pem", "cert.pem", "other.p12",
                                 "cert9.db", "key4.db", "pkcs11.txt"}) {
            RunCommand({"rm", "-f", Path(file)});
        }
    }
}

// Two pages, 3 and 10; the empty field 11 has the widgets `kids`, of which 12 stands on page 10, as
// `listed` may say otherwise, and 13 on page 3.
class PdfWidgetsTest : public PdfChangesTest {
protected:
    static std::string KidOf(int field, const std::string& more) {
        return "<< /Type /Annot /Subtype /Widget /Parent " + std::to_string(field) + " 0 R " +
               more + " >>";
    }

    static std::string Field(const std::string& kids, const std::string& more = "") {
        return "<< /FT /Sig /T (Approval) /Kids " + kids + " " + more + " >>";
    }

    static std::string Empty(const std::string& kids, const std::string& listed = "[12 0 R]",
                             const std::string& first = m_large, const Objects& more = {}) {
        Objects other = {
            {2, "<< /Type /Pages /Kids [3 0 R 10 0 R] /Count 2 /MediaBox [0 0 595 842] >>"},
            {6, "[8 0 R 11 0 R]"},
            {7, "[8 0 R 13 0 R]"}};
        for (const auto& [number, body] : more) other[number] = body;
        return Signed("", "",
                      {"<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Annots " + listed + " >>",
                       Field(kids), KidOf(11, first), KidOf(11, "/P 3 0 R /Rect [9 9 10 10] /F 2")},
                      other);
    }

    // A further signature fills the field.
    static std::string Filled(const std::string& pdf, const std::string& kids,
                              const Objects& objects = {}) {
        Objects all = objects;
        all.merge(Objects{{11, Field(kids, "/V 21 0 R")}, {21, kSignature}, {22, Looks()}});
        return SignedUpdate(pdf, all);
    }

    static std::string Looks() {
        return Stream("0 0 595 842 re f", "/Type /XObject /Subtype /Form /BBox [0 0 595 842]");
    }

    static const std::string m_large;
    static const std::string m_shown;
};

const std::string PdfWidgetsTest::m_large = "/P 10 0 R /Rect [0 0 595 842] /F 2";
const std::string PdfWidgetsTest::m_shown =
    "/P 10 0 R /Rect [0 0 595 842] /F 4 /AP << /N 22 0 R >>";

TEST_F(PdfWidgetsTest, AnEmptyFieldMayBeFilledWithItsWidgetBelowItAndTellsWhere) {
    const auto pdf = Filled(Empty("[12 0 R]"), "[12 0 R]", {{12, KidOf(11, m_shown)}});
    EXPECT_EQ(AlteredBetween(pdf), m_nothing);
    const auto found = Read(pdf);
    EXPECT_EQ(found.list.at(1).page, 2);
    EXPECT_EQ(found.list.at(1).rectangle, (std::array<double, 4>{0, 0, 595, 842}));
}

TEST_F(PdfWidgetsTest, AnEmptyFieldOfSeveralWidgetsMayNotBeFilled) {
    for (const char* kids : {"[12 0 R 13 0 R]", "[13 0 R 12 0 R]"}) {
        EXPECT_EQ(AlteredBetween(Filled(Empty(kids), kids, {{12, KidOf(11, m_shown)}})),
                  (std::vector<int>{11, 12}))
            << kids;
    }
}

TEST_F(PdfWidgetsTest, AWidgetThatItsFieldDoesNotHaveMayNotBePainted) {
    EXPECT_EQ(AlteredBetween(Filled(Empty("[13 0 R]"), "[13 0 R]", {{12, KidOf(11, m_shown)}})),
              std::vector<int>{12});
    // In no field at all, with the value of a field that comes.
    const std::string alone = "/FT /Sig /T (Alone) ";
    EXPECT_EQ(AlteredBetween(Again(Empty("[13 0 R]", "[12 0 R]", alone + m_large),
                                   {{6, "[8 0 R 11 0 R 20 0 R]"},
                                    {7, "[8 0 R 13 0 R 20 0 R]"},
                                    {12, KidOf(11, alone + m_shown + " /V 21 0 R")},
                                    {22, Looks()}})),
              std::vector<int>{12});
}

TEST_F(PdfWidgetsTest, ANewWidgetThatItsFieldDoesNotHaveMayNotCome) {
    EXPECT_EQ(
        AlteredBetween(Again(Signed(), {{7, "[8 0 R 30 0 R]"}, {30, Widget("Beside", "21 0 R")}})),
        std::vector<int>{7});
}

TEST_F(PdfWidgetsTest, ThePageThatListsAFilledWidgetIsToldWhateverTheWidgetSays) {
    const std::string rectangle = " /Rect [0 0 595 842] /F 4 ";
    for (const char* page : {"/P 3 0 R", "/P 90 0 R", "", "/P 10 0 R"}) {
        const auto pdf = Filled(Empty("[12 0 R]", "[12 0 R]", page + rectangle), "[12 0 R]",
                                {{12, KidOf(11, page + rectangle + "/AP << /N 22 0 R >>")}});
        EXPECT_EQ(AlteredBetween(pdf), m_nothing) << page;
        EXPECT_EQ(Read(pdf).list.at(1).page, 2) << page;
    }
}

TEST_F(PdfWidgetsTest, AWidgetOnSeveralPagesMayNotBeFilled) {
    const auto filled = [&](const std::string& listed, const Objects& more) {
        return AlteredBetween(Filled(Empty("[12 0 R]", listed, m_large, more), "[12 0 R]",
                                     {{12, KidOf(11, m_shown)}}));
    };
    const std::vector<int> both = {11, 12};
    EXPECT_EQ(filled("[12 0 R]", {}), m_nothing);
    EXPECT_EQ(filled("[12 0 R]", {{7, "[8 0 R 12 0 R]"}}), both);
    EXPECT_EQ(filled("7 0 R", {{7, "[8 0 R 12 0 R]"}}), both);
    // A page twice, and a branch.
    EXPECT_EQ(filled("[12 0 R]", {{2, "<< /Type /Pages /Kids [3 0 R 10 0 R 10 0 R] /Count 3 >>"}}),
              both);
    EXPECT_EQ(filled("[12 0 R]", {{2, "<< /Type /Pages /Kids [5 0 R 5 0 R 3 0 R] /Count 3 >>"},
                                  {5, "<< /Type /Pages /Kids [10 0 R] /Count 1 >>"}}),
              both);
}

TEST_F(PdfWidgetsTest, AFieldThatIsShownBesideItsWidgetKeepsItsLooks) {
    const auto pdf = Empty("[13 0 R]", "[11 0 R]");
    EXPECT_EQ(
        AlteredBetween(SignedUpdate(pdf, {{11, Field("[13 0 R]", "/V 21 0 R /AP << /N 22 0 R >>")},
                                          {21, kSignature},
                                          {22, Looks()}})),
        std::vector<int>{11});
    EXPECT_EQ(AlteredBetween(Filled(pdf, "[13 0 R]")), m_nothing);
}

TEST_F(PdfWidgetsTest, AnUnreadablePageLeavesNothingToBeTold) {
    const auto pdf = Empty("[12 0 R]", "[12 0 R]", m_large,
                           {{2, "<< /Type /Pages /Kids [3 0 R 10 0 R null] /Count 3 >>"}});
    EXPECT_EQ(AlteredBetween(Filled(pdf, "[12 0 R]", {{12, KidOf(11, m_shown)}})),
              (std::vector<int>{11, 12}));
}

}  // namespace
