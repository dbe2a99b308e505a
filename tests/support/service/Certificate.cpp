#include "tests/support/service/Certificate.h"

#include <openssl/ec.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

namespace velmora::testing {

Certificate::Certificate()
    : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free), x509_(X509_new(), X509_free) {
  X509* const x509 = x509_.get();
  X509_set_version(x509, X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(x509), 1);
  X509_gmtime_adj(X509_getm_notBefore(x509), -60);
  X509_gmtime_adj(X509_getm_notAfter(x509), 24 * 60 * 60);
  X509_set_pubkey(x509, key_.get());
  X509_NAME* const name = X509_get_subject_name(x509);
  const auto* const subject = reinterpret_cast<const unsigned char*>("A service on this machine");
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, subject, -1, -1, 0);
  X509_set_issuer_name(x509, name);
  X509_EXTENSION* const host = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
  X509_add_ext(x509, host, -1);
  X509_EXTENSION_free(host);
  X509_sign(x509, key_.get(), EVP_sha256());
}

std::string Certificate::pem() const {
  const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
  PEM_write_bio_X509(memory.get(), x509_.get());
  char* text = nullptr;
  const long size = BIO_get_mem_data(memory.get(), &text);
  return {text, static_cast<std::size_t>(size)};
}

}  // namespace velmora::testing
