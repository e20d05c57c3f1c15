// The formatting library, compiled once with the compiler in use: Debian packages it for the host only.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template std::locale locale_ref::get<std::locale>() const;
template dragonbox::decimal_fp<float> dragonbox::to_decimal(float) noexcept;
template dragonbox::decimal_fp<double> dragonbox::to_decimal(double) noexcept;
template void buffer<char>::append(const char*, const char*);
template void vformat_to(buffer<char>&, string_view, basic_format_args<buffer_context<char>>, locale_ref);
template thousands_sep_result<char> thousands_sep_impl(locale_ref);
template char decimal_point_impl(locale_ref);
template thousands_sep_result<wchar_t> thousands_sep_impl(locale_ref);
template wchar_t decimal_point_impl(locale_ref);

}  // namespace detail
FMT_END_NAMESPACE
