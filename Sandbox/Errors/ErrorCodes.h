// The sandbox's error domains and their codes.
#pragma once

namespace hlv::sandbox {

inline constexpr const char* urlErrorDomain = "HLVURLErrorDomain";
inline constexpr const char* paymentErrorDomain = "HLVPaymentErrorDomain";
inline constexpr const char* argumentErrorDomain = "HLVArgumentErrorDomain";
inline constexpr const char* backendErrorDomain = "HLVBackendErrorDomain";
inline constexpr const char* providerErrorDomain = "PLVErrorDomain";
/// What goes wrong between a client and a service, by an armed fault or for real.
inline constexpr const char* transportErrorDomain = "HLVTransportErrorDomain";

/// In `urlErrorDomain`.
enum class URLErrorCode { notConnected = 1 };

/// In `argumentErrorDomain`.
enum class ArgumentErrorCode { invalid = 1, required = 2 };

/// In `paymentErrorDomain`, where 5 means that an added card came out unusable.
enum class CardErrorCode {
  providerFailed = 10,
  numberMissing = 101,
  numberNotDigits,
  brandUnknown,
  numberLength,
  numberChecksum,
  expiryMonth,
  expiryYear,
  expired,
  securityCode,
  cardHolder,
  useCase,
};

/// In `backendErrorDomain`.
enum class BackendErrorCode {
  invalidRequest = 400,
  notSignedIn = 401,
  foreignGuest = 403,
  unknownCard = 404,
  unknownGuest = 410,
  cardRefused = 422,
  storeFailed = 507,
};

/// In `transportErrorDomain`.
enum class TransportErrorCode {
  /// Nobody listens at the address.
  unreachable = 1,
  timedOut = 2,
  /// The connection ended before a reply was whole.
  broken = 3,
  /// What came is no reply of the service.
  unreadable = 4,
};

/// In `providerErrorDomain`.
enum class ProviderErrorCode {
  invalidRequest = 400,
  notRegistered = 401,
  cardDeclined = 402,
  unknownToken = 404,
  unknownUseCase = 406,
  instrumentGone = 410,
  malformedCard = 422,
  storeFailed = 507,
};

}  // namespace hlv::sandbox
