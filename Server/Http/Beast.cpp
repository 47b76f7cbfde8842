// The HTTP and network libraries, compiled once for all that use them.
#include <boost/asio/impl/src.hpp>
#include <boost/beast/src.hpp>
#include <boost/url/src.hpp>
