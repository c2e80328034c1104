#include "server/Identity.h"

#include "server/Crypto.h"
#include "server/GnuTls.h"

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <ctime>
#include <gnutls/x509.h>
#include <memory>

namespace nimbrelle::server {

namespace {

using Key = std::unique_ptr<gnutls_x509_privkey_int, decltype(&gnutls_x509_privkey_deinit)>;
using Certificate = std::unique_ptr<gnutls_x509_crt_int, decltype(&gnutls_x509_crt_deinit)>;

Key newKey()
{
    gnutls_x509_privkey_t key = nullptr;
    requireGnuTls(gnutls_x509_privkey_init(&key), "preparing a key");
    return {key, &gnutls_x509_privkey_deinit};
}

Certificate newCertificate()
{
    gnutls_x509_crt_t certificate = nullptr;
    requireGnuTls(gnutls_x509_crt_init(&certificate), "preparing a certificate");
    return {certificate, &gnutls_x509_crt_deinit};
}

std::string pem(const Key &key)
{
    gnutls_datum_t output{};
    requireGnuTls(gnutls_x509_privkey_export2(key.get(), GNUTLS_X509_FMT_PEM, &output), "writing the key");
    return takeText(output);
}

std::string exported(const Certificate &certificate, gnutls_x509_crt_fmt_t format)
{
    gnutls_datum_t output{};
    requireGnuTls(gnutls_x509_crt_export2(certificate.get(), format, &output), "writing the certificate");
    return takeText(output);
}

void setHostName(const Certificate &certificate, const std::string &host)
{
    std::array<unsigned char, 16> address{};
    unsigned size = 0;
    if (::inet_pton(AF_INET, host.c_str(), address.data()) == 1)
        size = 4;
    else if (::inet_pton(AF_INET6, host.c_str(), address.data()) == 1)
        size = 16;
    const int code = size > 0 ? gnutls_x509_crt_set_subject_alt_name(
                         certificate.get(), GNUTLS_SAN_IPADDRESS, address.data(), size, GNUTLS_FSAN_SET)
                              : gnutls_x509_crt_set_subject_alt_name(certificate.get(), GNUTLS_SAN_DNSNAME,
                                  host.data(), static_cast<unsigned>(host.size()), GNUTLS_FSAN_SET);
    requireGnuTls(code, "naming the host in the certificate");
}

void setValidity(const Certificate &certificate)
{
    // A day of grace for a device whose clock runs behind.
    constexpr std::time_t day = 24 * 60 * 60;
    constexpr std::time_t fiftyYears = 18263 * day;
    const std::time_t now = std::time(nullptr);
    requireGnuTls(
        gnutls_x509_crt_set_activation_time(certificate.get(), now - day), "dating the certificate");
    requireGnuTls(
        gnutls_x509_crt_set_expiration_time(certificate.get(), now + fiftyYears), "dating the certificate");
}

void setSerial(const Certificate &certificate)
{
    std::string serial = randomBytes(16);
    serial[0] = static_cast<char>((serial[0] & 0x3f) | 0x40); // positive and of full length
    requireGnuTls(gnutls_x509_crt_set_serial(certificate.get(), serial.data(), serial.size()),
        "numbering the certificate");
}

Certificate signedCertificate(const Key &key, const std::string &host)
{
    Certificate certificate = newCertificate();
    constexpr std::string_view name = "nimbrelle-server";
    requireGnuTls(gnutls_x509_crt_set_version(certificate.get(), 3), "making the certificate");
    requireGnuTls(gnutls_x509_crt_set_dn_by_oid(certificate.get(), GNUTLS_OID_X520_COMMON_NAME, 0,
                      name.data(), static_cast<unsigned>(name.size())),
        "naming the certificate");
    requireGnuTls(gnutls_x509_crt_set_key(certificate.get(), key.get()), "making the certificate");
    requireGnuTls(gnutls_x509_crt_set_key_usage(certificate.get(), GNUTLS_KEY_DIGITAL_SIGNATURE),
        "making the certificate");
    requireGnuTls(gnutls_x509_crt_set_key_purpose_oid(certificate.get(), GNUTLS_KP_TLS_WWW_SERVER, 0),
        "making the certificate");
    setHostName(certificate, host);
    setValidity(certificate);
    setSerial(certificate);
    requireGnuTls(
        gnutls_x509_crt_sign2(certificate.get(), certificate.get(), key.get(), GNUTLS_DIG_SHA256, 0),
        "signing the certificate");
    return certificate;
}

std::string publicKeyId(const Key &key)
{
    std::array<unsigned char, 64> id{};
    std::size_t size = id.size();
    requireGnuTls(gnutls_x509_privkey_get_key_id(key.get(), GNUTLS_KEYID_USE_SHA256, id.data(), &size),
        "reading the key");
    return {reinterpret_cast<char *>(id.data()), size};
}

std::string publicKeyId(const Certificate &certificate)
{
    std::array<unsigned char, 64> id{};
    std::size_t size = id.size();
    requireGnuTls(gnutls_x509_crt_get_key_id(certificate.get(), GNUTLS_KEYID_USE_SHA256, id.data(), &size),
        "reading the certificate");
    return {reinterpret_cast<char *>(id.data()), size};
}

Certificate parsedCertificate(const std::string &text, const std::string &what)
{
    Certificate certificate = newCertificate();
    const gnutls_datum_t input = datum(text);
    requireGnuTls(gnutls_x509_crt_import(certificate.get(), &input, GNUTLS_X509_FMT_PEM), what);
    return certificate;
}

} // namespace

std::string Identity::pin() const
{
    const auto parsed = parsedCertificate(certificate, "reading the certificate");
    return hexText(bytesOf(sha256(exported(parsed, GNUTLS_X509_FMT_DER))));
}

Identity makeIdentity(const std::string &host)
{
    Key key = newKey();
    requireGnuTls(gnutls_x509_privkey_generate(
                      key.get(), GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
        "making a key");
    return {.key = pem(key), .certificate = exported(signedCertificate(key, host), GNUTLS_X509_FMT_PEM)};
}

Identity loadIdentity(const DataDirectory &directory)
{
    Identity identity{.key = readFile(directory.key()), .certificate = readFile(directory.certificate())};
    const std::string advice = "put the file back from a backup, or remove server.key and server.crt and run "
                               "init again (all devices must then be connected anew)";
    Key key = newKey();
    const gnutls_datum_t input = datum(identity.key);
    requireGnuTls(gnutls_x509_privkey_import(key.get(), &input, GNUTLS_X509_FMT_PEM),
        directory.key().string() + " is damaged; " + advice);
    const auto certificate =
        parsedCertificate(identity.certificate, directory.certificate().string() + " is damaged; " + advice);
    if (publicKeyId(key) != publicKeyId(certificate))
        throw Failure("server.key and server.crt in " + directory.path().string()
            + " do not belong together; " + advice + ".");
    return identity;
}

} // namespace nimbrelle::server
