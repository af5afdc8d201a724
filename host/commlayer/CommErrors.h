#pragma once
// First code of the error pair that a failed device request leaves in
// Base::Error (the second code is the device's sub-status code, or the HTTP
// status when the device gave none, or 0).
namespace commlayer {

enum TransportError : int {
    kErrNone = 0,
    kErrPassword = 1,      // 401: wrong user name or password
    kErrConnect = 7,       // cannot connect / resolve
    kErrSend = 8,
    kErrRecv = 9,          // connection reset or closed mid-answer
    kErrTimeout = 10,      // the request's time-out passed
    kErrBadAnswer = 11,    // answer body is not well-formed XML/JSON
    kErrDeviceStatus = 12, // device refused the request (status document)
    kErrHttp = 13,         // other HTTP error status without a status document
    kErrTooLarge = 14,     // answer body over the limit of its kind: transfer cut (second: HTTP status)
    kErrParam = 17,        // bad request record
    kErrTls = 29,          // TLS handshake or certificate verification failed
    kErrInsecureAuth = 31, // the device asked for the password in clear outside verified TLS
    kErrNoDevice = 47,     // device identifier not in the host configuration
    kErrCancelled = 48,    // the caller cancelled the request (CRequestCancel)
};

} // namespace commlayer
