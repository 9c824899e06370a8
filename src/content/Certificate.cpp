#include "content/Certificate.h"

#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>
#include <gnutls/x509.h>

#include <array>
#include <ctime>
#include <stdexcept>
#include <type_traits>

namespace kestrin::content {
namespace {

using Key = GHandle<std::remove_pointer_t<gnutls_x509_privkey_t>, gnutls_x509_privkey_deinit>;
using Crt = GHandle<std::remove_pointer_t<gnutls_x509_crt_t>, gnutls_x509_crt_deinit>;

constexpr std::time_t kDay = 24 * 60 * 60;

void check(int result) {
    if (result < 0)
        throw std::runtime_error(std::string("making the certificate: ") + gnutls_strerror(result));
}

std::string pem(const gnutls_datum_t& datum) {
    std::string text(reinterpret_cast<const char*>(datum.data), datum.size);
    gnutls_free(datum.data);
    return text;
}

Key makeKey() {
    gnutls_x509_privkey_t raw = nullptr;
    check(gnutls_x509_privkey_init(&raw));
    Key key(raw);
    check(gnutls_x509_privkey_generate(raw, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1),
                                       0));
    return key;
}

void addName(gnutls_x509_crt_t crt, const std::string& name) {
    const auto address = GPointer<GInetAddress>::adopt(g_inet_address_new_from_string(name.c_str()));
    if (address)
        check(gnutls_x509_crt_set_subject_alt_name(
            crt, GNUTLS_SAN_IPADDRESS, g_inet_address_to_bytes(address.get()),
            static_cast<unsigned>(g_inet_address_get_native_size(address.get())), GNUTLS_FSAN_APPEND));
    else
        check(gnutls_x509_crt_set_subject_alt_name(crt, GNUTLS_SAN_DNSNAME, name.data(),
                                                   static_cast<unsigned>(name.size()), GNUTLS_FSAN_APPEND));
}

void setSerial(gnutls_x509_crt_t crt) {
    std::array<unsigned char, 16> serial;
    check(gnutls_rnd(GNUTLS_RND_NONCE, serial.data(), serial.size()));
    serial[0] = static_cast<unsigned char>((serial[0] & 0x7f) | 0x40); // a positive number of full length
    check(gnutls_x509_crt_set_serial(crt, serial.data(), serial.size()));
}

} // namespace

GPointer<GTlsCertificate> makeCertificate(const std::vector<std::string>& names) {
    const Key key = makeKey();
    gnutls_x509_crt_t crt = nullptr;
    check(gnutls_x509_crt_init(&crt));
    const Crt owner(crt);

    const std::time_t now = std::time(nullptr);
    check(gnutls_x509_crt_set_version(crt, 3));
    setSerial(crt);
    // A subject's common name holds at most 64 characters; clients go by the alternative names.
    const std::string subject = names.front().substr(0, 64);
    check(gnutls_x509_crt_set_dn_by_oid(crt, GNUTLS_OID_X520_COMMON_NAME, 0, subject.data(),
                                        static_cast<unsigned>(subject.size())));
    for (const std::string& name : names)
        addName(crt, name);
    check(gnutls_x509_crt_set_activation_time(crt, now - kDay)); // the client's clock may be behind
    check(gnutls_x509_crt_set_expiration_time(crt, now + 365 * kDay));
    check(gnutls_x509_crt_set_basic_constraints(crt, 0, -1));
    check(gnutls_x509_crt_set_key_usage(crt, GNUTLS_KEY_DIGITAL_SIGNATURE));
    check(gnutls_x509_crt_set_key_purpose_oid(crt, GNUTLS_KP_TLS_WWW_SERVER, 0));
    check(gnutls_x509_crt_set_key(crt, key.get()));
    check(gnutls_x509_crt_sign2(crt, crt, key.get(), GNUTLS_DIG_SHA256, 0));

    gnutls_datum_t text{};
    check(gnutls_x509_crt_export2(crt, GNUTLS_X509_FMT_PEM, &text));
    std::string both = pem(text);
    check(
        gnutls_x509_privkey_export2_pkcs8(key.get(), GNUTLS_X509_FMT_PEM, nullptr, GNUTLS_PKCS_PLAIN, &text));
    both += pem(text);

    GFailure failure;
    auto certificate = GPointer<GTlsCertificate>::adopt(
        g_tls_certificate_new_from_pem(both.data(), static_cast<gssize>(both.size()), failure.out()));
    if (!certificate)
        throw std::runtime_error(std::string("making the certificate: ") + failure.text());
    return certificate;
}

} // namespace kestrin::content
