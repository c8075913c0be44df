#include "tools/sealserver/AdminPages.h"

#include "components/seallibrary/SealTime.h"
#include "tools/sealserver/Html.h"
#include "tools/sealserver/Password.h"

namespace {

// What password managers keep a password under; there is one user.
constexpr char kUserField[] =
    "<input type=\"text\" name=\"user\" value=\"administrator\" autocomplete=\"username\" hidden "
    "aria-label=\"User\">\n";

std::string Card(const std::string& content, const std::string& className = "") {
    return "<section class=\"card " + className + "\">\n" + content + "</section>\n";
}

std::string Link(const std::string& address, const std::string& text,
                 const std::string& className = "") {
    return "<a class=\"" + className + "\" href=\"" + Escaped(address) + "\">" + Escaped(text) +
           "</a>";
}

std::string Cell(const std::string& html) { return "<td>" + html + "</td>"; }

std::string Row(const std::string& term, const std::string& html) {
    return "<dt>" + Escaped(term) + "</dt><dd>" + html + "</dd>\n";
}

struct Field {
    const char* name;
    const char* label;
    const char* attributes;  // of the input, as HTML
    std::string hint;
};

std::string Input(const Field& field) {
    const std::string name = field.name;
    std::string html = "<label for=\"" + name + "\">" + Escaped(field.label) + "</label>\n" +
                       "<input id=\"" + name + "\" name=\"" + name + "\" " + field.attributes;
    if (field.hint.empty()) return html + ">\n";
    return html + " aria-describedby=\"" + name + "-hint\">\n<p class=\"hint\" id=\"" + name +
           "-hint\">" + Escaped(field.hint) + "</p>\n";
}

std::string Form(const std::string& action, const std::string& inside, const std::string& button) {
    return "<form method=\"post\" action=\"" + Escaped(action) +
           "\" enctype=\"multipart/form-data\">\n" + inside + "<button class=\"main\">" +
           Escaped(button) + "</button>\n</form>\n";
}

std::string Number(std::int64_t number) { return std::to_string(number); }

std::string StateText(bool suspended) {
    return suspended ? "<span class=\"state suspended\">suspended</span>"
                     : "<span class=\"state\">in use</span>";
}

std::string NameOf(const StoredCertificate& certificate) {
    return certificate.name.empty() ? "(no name)" : certificate.name;
}

std::string Picture(const StoredSeal& seal, const std::string& size) {
    return "<img class=\"seal " + size + "\" src=\"/seals/" + Number(seal.id) +
           "/picture\" alt=\"Picture of " + Escaped(seal.name) + "\">";
}

std::string SwitchForm(const StoredSeal& seal, const std::string& formToken) {
    const std::string place = "/seals/" + Number(seal.id);
    return seal.suspended ? ButtonForm(place + "/resume", formToken, "Resume")
                          : ButtonForm(place + "/suspend", formToken, "Suspend");
}

std::string CertificateRow(const CertificateEntry& entry) {
    const std::string place = "/certificates/" + Number(entry.certificate.id);
    std::string seals = std::to_string(entry.seals);
    if (entry.suspended > 0) seals += " (" + std::to_string(entry.suspended) + " suspended)";
    return "<tr>" + Cell(Link(place, NameOf(entry.certificate))) +
           Cell(Escaped(entry.certificate.serial)) + Cell(seals) +
           Cell(Link(place + "/remove", "Remove")) + "</tr>\n";
}

std::string SealRow(const StoredSeal& seal, const std::string& formToken) {
    const std::string place = "/seals/" + Number(seal.id);
    return "<tr>" + Cell(Picture(seal, "small")) + Cell(Link(place, seal.name)) +
           Cell(Escaped(seal.number)) +
           Cell("<span class=\"whole\">" + Escaped(seal.form) + "</span>") +
           Cell(StateText(seal.suspended)) +
           Cell("<div class=\"actions\">" + SwitchForm(seal, formToken) +
                Link(place + "/remove", "Remove", "button") + "</div>") +
           "</tr>\n";
}

std::string NewCertificate(const std::string& formToken) {
    return Card("<h2>Add a certificate</h2>\n" +
                Form("/certificates",
                     TokenField(formToken) +
                         Input({"file", "Certificate file", "type=\"file\"",
                                "PEM or DER. Its serial number and name are read from it."}) +
                         Input({"serial", "Or its serial number", "autocomplete=\"off\"",
                                "Hexadecimal, as SOF_GetCertInfo tells it for type 2."}) +
                         Input({"name", "and its distinguished name", "autocomplete=\"off\"",
                                "Exactly as SOF_GetCertInfo tells it for type 33."}),
                     "Add certificate"));
}

std::string NewSeal(const StoredCertificate& certificate, const std::string& formToken) {
    return Card("<h2>Add a seal</h2>\n" +
                Form("/certificates/" + Number(certificate.id) + "/seals",
                     TokenField(formToken) +
                         Input({"file", "Seal file", "type=\"file\" required",
                                "GM/T 0031, GB/T 38540 or \"ES\", up to 8 MiB."}) +
                         Input({"number", "Number", "autocomplete=\"off\" maxlength=\"200\"",
                                "Left empty: the number in the seal."}) +
                         Input({"name", "Name", "autocomplete=\"off\" maxlength=\"200\"",
                                "Left empty: the name in the seal."}),
                     "Add seal"));
}

std::string SealRows(const StoredSeal& seal, const OfferedSeal& offered,
                     const StoredCertificate& certificate) {
    std::string rows =
        Row("Certificate", Link("/certificates/" + Number(certificate.id), NameOf(certificate))) +
        Row("Number", Escaped(seal.number)) + Row("Form", Escaped(seal.form)) +
        Row("State", StateText(seal.suspended)) + Row("Added", Escaped(seal.added)) +
        Row("File", Link("/seals/" + Number(seal.id) + "/file", "Download") + ", " +
                        std::to_string(seal.file.size()) + " bytes") +
        Row("SM3 hash", Escaped(seal.hash));
    if (!offered.national) return rows;
    const Seal& national = *offered.national;
    rows += Row("Number in the seal", Escaped(national.esId)) +
            Row("Name in the seal", Escaped(national.name)) +
            Row("Vendor", Escaped(national.vendorId)) +
            Row("Valid",
                Escaped(IsoTimeText(national.validFrom) + " to " + IsoTimeText(national.validTo))) +
            Row("Size", std::to_string(national.widthMm) + " by " +
                            std::to_string(national.heightMm) + " mm");
    return rows;
}

}  // namespace

std::string LoginContent() {
    return Card(
        Form("/login",
             kUserField +
                 Input({"password", "Password",
                        "type=\"password\" autocomplete=\"current-password\" required autofocus",
                        ""}),
             "Log in"),
        "narrow");
}

std::string PasswordContent(const std::string& formToken) {
    return Card(
        Form("/password",
             TokenField(formToken) + kUserField +
                 Input({"current", "Current password",
                        "type=\"password\" autocomplete=\"current-password\" required", ""}) +
                 Input({"new", "New password",
                        "type=\"password\" autocomplete=\"new-password\" required",
                        "At least " + std::to_string(kShortestPassword) + " characters."}) +
                 Input({"again", "New password again",
                        "type=\"password\" autocomplete=\"new-password\" required", ""}),
             "Change password"),
        "narrow");
}

std::string CertificatesContent(const std::vector<CertificateEntry>& entries,
                                const std::string& formToken) {
    if (entries.empty())
        return Card("<p>No certificate is known yet.</p>\n") + NewCertificate(formToken);
    std::string rows;
    for (const CertificateEntry& entry : entries) rows += CertificateRow(entry);
    return Card(
               "<table>\n<caption>Known certificates</caption>\n<thead><tr><th scope=\"col\">Name"
               "</th><th scope=\"col\">Serial number</th><th scope=\"col\">Seals</th><th "
               "scope=\"col\">Actions</th></tr></thead>\n<tbody>\n" +
                   rows + "</tbody>\n</table>\n",
               "wide") +
           NewCertificate(formToken);
}

std::string CertificateContent(const StoredCertificate& certificate,
                               const std::vector<StoredSeal>& seals, const std::string& formToken) {
    std::string content = Card(
        "<dl>" + Row("Distinguished name", Escaped(NameOf(certificate))) +
        Row("Serial number", Escaped(certificate.serial)) +
        Row("Entered", certificate.der.empty() ? "by its two texts" : "by its file") + "</dl>\n");
    std::string rows;
    for (const StoredSeal& seal : seals) rows += SealRow(seal, formToken);
    content += seals.empty()
                   ? Card("<p>It has no seals yet.</p>\n")
                   : Card(
                         "<table>\n<caption>Its seals</caption>\n<thead><tr><th scope=\"col\">"
                         "Picture</th><th scope=\"col\">Name</th><th scope=\"col\">Number</th><th "
                         "scope=\"col\">Form</th><th scope=\"col\">State</th><th scope=\"col\">"
                         "Actions</th></tr></thead>\n<tbody>\n" +
                             rows + "</tbody>\n</table>\n",
                         "wide");
    return content + NewSeal(certificate, formToken);
}

std::string SealContent(const StoredSeal& seal, const OfferedSeal& offered,
                        const StoredCertificate& certificate, const std::string& formToken) {
    std::string content;
    const std::string warning = WarningAbout(offered, certificate);
    if (!warning.empty())
        content += "<p class=\"notice fault\" role=\"note\">" + Escaped(warning) + "</p>\n";
    content += Card(PictureType(offered.picture).empty()
                        ? "<p>Its picture is none that a browser shows.</p>\n"
                        : "<p>" + Picture(seal, "large") + "</p>\n");
    content += Card("<dl>" + SealRows(seal, offered, certificate) + "</dl>\n");
    return content + "<div class=\"row\">" + SwitchForm(seal, formToken) +
           Link("/seals/" + Number(seal.id) + "/remove", "Remove", "button") + "</div>\n";
}

std::string RemovalContent(const std::string& what, const std::string& action,
                           const std::string& back, const std::string& formToken) {
    return Card("<p>" + Escaped(what) + "</p>\n<div class=\"row\">" +
                ButtonForm(action, formToken, "Remove for good") + Link(back, "Keep it", "button") +
                "</div>\n");
}
