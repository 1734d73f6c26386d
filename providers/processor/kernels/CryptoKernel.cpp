#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <cstring>
#include <memory>
#include <vector>

#include "providers/processor/kernels/Module.h"

// Hashes and ciphers, with what they were published to make of known texts.

namespace {

constexpr std::size_t kTextWords = 256;
constexpr std::size_t kKeyWords = 4, kNonceWords = 2;
constexpr std::size_t kOperands = kTextWords + kKeyWords + kNonceWords;
constexpr int kTextBytes = kTextWords * 8;
constexpr std::size_t kSha256Words = 4, kSha512Words = 8, kTagWords = 2;

using Bytes = unsigned char;

struct Free {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

const Bytes* bytesOf(const std::uint64_t* words) { return reinterpret_cast<const Bytes*>(words); }
Bytes* bytesOf(std::uint64_t* words) { return reinterpret_cast<Bytes*>(words); }

bool hash(const EVP_MD* kind, const void* text, std::size_t length, Bytes* result) {
  thread_local std::unique_ptr<EVP_MD_CTX, Free> context(EVP_MD_CTX_new());
  return EVP_DigestInit_ex(context.get(), kind, nullptr) == 1 &&
         EVP_DigestUpdate(context.get(), text, length) == 1 &&
         EVP_DigestFinal_ex(context.get(), result, nullptr) == 1;
}

/// Encrypts, and writes the tag behind the text where there is one.
bool encrypt(const EVP_CIPHER* kind, const Bytes* key, const Bytes* nonce, const Bytes* text,
             int length, Bytes* result, bool hasTag) {
  thread_local std::unique_ptr<EVP_CIPHER_CTX, Free> context(EVP_CIPHER_CTX_new());
  int written = 0;
  return EVP_EncryptInit_ex(context.get(), kind, nullptr, key, nonce) == 1 &&
         EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
         EVP_EncryptUpdate(context.get(), result, &written, text, length) == 1 &&
         EVP_EncryptFinal_ex(context.get(), result + written, &written) == 1 &&
         (!hasTag ||
          EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, 16, result + length) == 1);
}

bool decrypt(const EVP_CIPHER* kind, const Bytes* key, const Bytes* nonce, const Bytes* text,
             int length, Bytes* result) {
  thread_local std::unique_ptr<EVP_CIPHER_CTX, Free> context(EVP_CIPHER_CTX_new());
  int written = 0;
  return EVP_DecryptInit_ex(context.get(), kind, nullptr, key, nonce) == 1 &&
         EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
         EVP_DecryptUpdate(context.get(), result, &written, text, length) == 1 &&
         EVP_DecryptFinal_ex(context.get(), result + written, &written) == 1;
}

/// The hashes of the text, right for the published one.
void hashBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  constexpr Bytes kAbc[] = {0xBA, 0x78, 0x16, 0xBF, 0x8F, 0x01, 0xCF, 0xEA, 0x41, 0x41, 0x40,
                            0xDE, 0x5D, 0xAE, 0x22, 0x23, 0xB0, 0x03, 0x61, 0xA3, 0x96, 0x17,
                            0x7A, 0x9C, 0xB4, 0x10, 0xFF, 0x61, 0xF2, 0x00, 0x15, 0xAD};
  Bytes known[sizeof kAbc] = {};
  const bool works = hash(EVP_sha256(), "abc", 3, known) &&
                     hash(EVP_sha256(), operands, kTextBytes, bytesOf(results)) &&
                     hash(EVP_sha512(), operands, kTextBytes, bytesOf(results + kSha256Words));
  results[kSha256Words + kSha512Words] = works && std::memcmp(known, kAbc, sizeof kAbc) == 0;
}

/// A block of FIPS 197.
bool knowsAes() {
  constexpr Bytes kExpected[] = {0x8E, 0xA2, 0xB7, 0xCA, 0x51, 0x67, 0x45, 0xBF,
                                 0xEA, 0xFC, 0x49, 0x90, 0x4B, 0x49, 0x60, 0x89};
  Bytes key[32], text[16], result[32] = {};
  for (unsigned i = 0; i < sizeof key; ++i) key[i] = static_cast<Bytes>(i);
  for (unsigned i = 0; i < sizeof text; ++i) text[i] = static_cast<Bytes>(i * 0x11);
  return encrypt(EVP_aes_256_ecb(), key, nullptr, text, sizeof text, result, false) &&
         std::memcmp(result, kExpected, sizeof kExpected) == 0;
}

/// The text in cipher, and back again; right if it came back, and for the published one.
void aesBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  const Bytes* const key = bytesOf(operands + kTextWords);
  const Bytes* const nonce = key + kKeyWords * 8;
  const bool works = encrypt(EVP_aes_256_ctr(), key, nonce, bytesOf(operands), kTextBytes,
                             bytesOf(results), false) &&
                     decrypt(EVP_aes_256_ctr(), key, nonce, bytesOf(results), kTextBytes,
                             bytesOf(results + kTextWords));
  const bool cameBack = std::memcmp(operands, results + kTextWords, kTextBytes) == 0;
  results[2 * kTextWords] = works && cameBack && knowsAes();
}

/// The text in cipher and its tag.
void chachaBlock(const std::uint64_t* operands, std::uint64_t* results, std::size_t) {
  const Bytes* const key = bytesOf(operands + kTextWords);
  results[kTextWords + kTagWords] = encrypt(EVP_chacha20_poly1305(), key, key + kKeyWords * 8,
                                            bytesOf(operands), kTextBytes, bytesOf(results), true);
}

bool offersHashes() {
  Bytes result[EVP_MAX_MD_SIZE];
  return hash(EVP_sha256(), "", 0, result) && hash(EVP_sha512(), "", 0, result);
}

/// Some installations leave ciphers out, which is no fault of a processor.
bool offers(const EVP_CIPHER* kind) {
  constexpr Bytes kNothing[32] = {};
  const std::unique_ptr<EVP_CIPHER_CTX, Free> context(EVP_CIPHER_CTX_new());
  return context && kind &&
         EVP_EncryptInit_ex(context.get(), kind, nullptr, kNothing, kNothing) == 1;
}

using Compute = void (*)(const std::uint64_t*, std::uint64_t*, std::size_t);

std::vector<providers::Operation> makeKernels() {
  constexpr auto kUnit = providers::Unit::Kernel;
  constexpr std::size_t kHashes = kSha256Words + kSha512Words, kCipher = kTextWords + kTagWords;
  const bool hasAes = offers(EVP_aes_256_ctr()) && offers(EVP_aes_256_ecb());
  const Compute hashes = offersHashes() ? hashBlock : nullptr;
  const Compute aes = hasAes ? aesBlock : nullptr;
  const Compute chacha = offers(EVP_chacha20_poly1305()) ? chachaBlock : nullptr;
  return {{"Hashes SHA-256 and SHA-512 (libcrypto)", kUnit, kTextWords, kHashes + 1, 1, nullptr,
           hashes, nullptr},
          {"Cipher AES-256 and back (libcrypto)", kUnit, kOperands, 2 * kTextWords + 1, 1, nullptr,
           aes, nullptr},
          {"Cipher ChaCha20-Poly1305 (libcrypto)", kUnit, kOperands, kCipher + 1, 1, nullptr,
           chacha, nullptr}};
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const providers::Operation*
DIAGS_KERNELS_FUNCTION(std::size_t* count) {
  // No configuration, which could name further libraries, and no clean-up, at whose time threads
  // may still be calculating.
  OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG | OPENSSL_INIT_NO_ATEXIT, nullptr);
  static const std::vector<providers::Operation>& kernels =
      *new std::vector<providers::Operation>(makeKernels());
  *count = kernels.size();
  return kernels.data();
}
