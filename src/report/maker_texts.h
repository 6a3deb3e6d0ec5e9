#pragma once

/// The maker's address block and copyright line on the summary: placeholders, to be replaced by the real ones here.
namespace maker
{

inline constexpr const char* postalBox = "P.O. Box 1234";
inline constexpr const char* street = "1 Example Street";
inline constexpr const char* town = "Exampletown, EX 12345 Country";
inline constexpr const char* telephone = "Telephone: 000-000-0000";
inline constexpr const char* fax = "Fax: 000-000-0000";
inline constexpr const char* webAddress = "www.halvor-orm.example";
inline constexpr const char* email = "sales@halvor-orm.example";
inline constexpr const char* copyright = "Copyright Halvor-ORM";

} // namespace maker
