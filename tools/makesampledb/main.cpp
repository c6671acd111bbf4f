// Makes the sample SQLite database of the explorer and the tests, or a large table for
// the benchmarks.
//
//   makesampledb OUT.db              customers, products, orders and order lines
//   makesampledb OUT.db --big ROWS   one table "big" of ROWS rows (never committed)
//
// The content is the same on every run: the random numbers come from a fixed seed.

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

sqlite3 *db = nullptr;

void check(int rc, const char *what)
{
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
        std::fprintf(stderr, "makesampledb: %s: %s\n", what, sqlite3_errmsg(db));
        std::exit(1);
    }
}

void exec(const char *sql)
{
    char *error = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        std::fprintf(stderr, "makesampledb: %s\n  in: %s\n", error, sql);
        std::exit(1);
    }
}

class Statement
{
public:
    explicit Statement(const char *sql) { check(sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr), sql); }
    ~Statement() { sqlite3_finalize(stmt_); }
    Statement &text(int i, const std::string &s)
    {
        sqlite3_bind_text(stmt_, i, s.c_str(), int(s.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Statement &integer(int i, long long v)
    {
        sqlite3_bind_int64(stmt_, i, v);
        return *this;
    }
    Statement &real(int i, double v)
    {
        sqlite3_bind_double(stmt_, i, v);
        return *this;
    }
    Statement &null(int i)
    {
        sqlite3_bind_null(stmt_, i);
        return *this;
    }
    void run()
    {
        check(sqlite3_step(stmt_), "insert");
        sqlite3_reset(stmt_);
    }

private:
    sqlite3_stmt *stmt_ = nullptr;
};

std::mt19937 rng(20240131);

int uniform(int lo, int hi)
{
    return lo + int(rng() % unsigned(hi - lo + 1));
}

bool chance(int percent)
{
    return uniform(1, 100) <= percent;
}

template<size_t N>
const char *pick(const char *const (&items)[N])
{
    return items[rng() % N];
}

std::string date(int year, int month, int day)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", year, month, day);
    return buf;
}

std::string randomDate(int fromYear, int toYear)
{
    return date(uniform(fromYear, toYear), uniform(1, 12), uniform(1, 28));
}

std::string time(int h, int m, int s)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d:%02d:%02d", h, m, s);
    return buf;
}

std::string money(long long cents)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%lld.%02lld", cents / 100, cents % 100);
    return buf;
}

const char *const words[] = {"quick", "careful", "delivery", "fragile", "urgent", "customer", "asked", "about",
                             "the",   "invoice", "before",   "packing", "second", "floor",    "ring",  "bell",
                             "leave", "at",      "door",     "call",    "first",  "weekend",  "only",  "thanks"};

std::string sentence(int count)
{
    std::string s;
    for (int i = 0; i < count; ++i) {
        if (i)
            s += ' ';
        s += pick(words);
    }
    s[0] = char(std::toupper(static_cast<unsigned char>(s[0])));
    return s + '.';
}

void makeSample()
{
    exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;");
    exec(R"(CREATE TABLE customers (
        CustNo INTEGER PRIMARY KEY, Company VARCHAR(40) NOT NULL, Contact VARCHAR(30), City VARCHAR(25),
        Country VARCHAR(20), Phone VARCHAR(20), Since DATE, Active BOOLEAN NOT NULL DEFAULT 1,
        "Credit Limit" NUMERIC(12,2), Notes TEXT))");
    exec(R"(CREATE TABLE products (
        ProductNo INTEGER PRIMARY KEY, Name VARCHAR(40) NOT NULL, Category VARCHAR(20),
        "Unit Price" NUMERIC(10,2) NOT NULL, InStock INTEGER, Discontinued BOOLEAN NOT NULL DEFAULT 0,
        Description TEXT))");
    exec(R"(CREATE TABLE orders (
        OrderNo INTEGER PRIMARY KEY, CustNo INTEGER NOT NULL REFERENCES customers(CustNo),
        OrderDate DATE NOT NULL, ShipTime TIME, ShippedAt DATETIME, Paid BOOLEAN NOT NULL DEFAULT 0,
        Total NUMERIC(12,2), Remarks TEXT))");
    exec(R"(CREATE TABLE order_lines (
        LineNo INTEGER PRIMARY KEY, OrderNo INTEGER NOT NULL REFERENCES orders(OrderNo),
        ProductNo INTEGER NOT NULL REFERENCES products(ProductNo), Qty INTEGER NOT NULL,
        "Unit Price" NUMERIC(10,2) NOT NULL, Discount REAL))");
    exec("BEGIN");

    const char *const firms[] = {"Acme", "Globex", "Initech", "Umbrella", "Hooli", "Vandelay", "Stark", "Wayne",
                                 "Tyrell", "Cyberdyne", "Soylent", "Wonka", "Gringotts", "Oscorp", "Aperture"};
    const char *const kinds[] = {"Trading", "Industries", "Imports", "Supplies", "Foods", "Logistics", "Labs"};
    const char *const first[] = {"Anna", "Ben", "Chloe", "David", "Emma", "Felix", "Grace", "Hugo", "Ida", "Jonas"};
    const char *const last[] = {"Meyer", "Smith", "Novak", "Rossi", "Larsen", "Dubois", "Kowalski", "Silva"};
    const char *const cities[][2] = {{"Berlin", "Germany"}, {"Lyon", "France"},  {"Oslo", "Norway"},
                                     {"Turin", "Italy"},    {"Porto", "Portugal"}, {"Leeds", "United Kingdom"},
                                     {"Gdansk", "Poland"},  {"Austin", "United States"}};
    const int customers = 500;
    {
        Statement s("INSERT INTO customers VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        for (int i = 1; i <= customers; ++i) {
            const auto &city = cities[rng() % 8];
            s.integer(1, i).text(2, std::string(pick(firms)) + " " + pick(kinds) + " " + std::to_string(i));
            if (chance(90))
                s.text(3, std::string(pick(first)) + " " + pick(last));
            else
                s.null(3);
            s.text(4, city[0]).text(5, city[1]);
            if (chance(80))
                s.text(6, "+" + std::to_string(uniform(10, 99)) + " " + std::to_string(uniform(1000000, 9999999)));
            else
                s.null(6);
            s.text(7, randomDate(2005, 2019)).integer(8, chance(85) ? 1 : 0);
            s.text(9, money(uniform(10, 500) * 10000LL));
            if (chance(30))
                s.text(10, sentence(uniform(20, 80)));
            else
                s.null(10);
            s.run();
        }
    }
    const char *const categories[] = {"Tools", "Garden", "Kitchen", "Office", "Outdoor", "Toys"};
    const char *const items[] = {"Hammer", "Rake", "Kettle", "Stapler", "Tent", "Kite", "Wrench", "Hose", "Pan",
                                 "Lamp", "Chair", "Drill"};
    const int products = 200;
    std::vector<long long> prices(products + 1);
    {
        Statement s("INSERT INTO products VALUES (?, ?, ?, ?, ?, ?, ?)");
        for (int i = 1; i <= products; ++i) {
            prices[i] = uniform(99, 49999);
            s.integer(1, i).text(2, std::string(pick(items)) + " model " + std::to_string(i)).text(3, pick(categories));
            s.text(4, money(prices[i]));
            if (chance(95))
                s.integer(5, uniform(0, 500));
            else
                s.null(5);
            s.integer(6, chance(10) ? 1 : 0).text(7, sentence(uniform(8, 40))).run();
        }
    }
    const int orders = 20000;
    const int lines = 100000;
    {
        Statement order("INSERT INTO orders VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
        Statement line("INSERT INTO order_lines VALUES (?, ?, ?, ?, ?, ?)");
        int lineNo = 0;
        for (int o = 1; o <= orders; ++o) {
            // Five lines an order on average, and exactly `lines` lines in all.
            const int left = orders - o + 1;
            const int count = o == orders ? lines - lineNo : std::max(1, std::min(lines - lineNo - (left - 1), uniform(1, 9)));
            long long total = 0;
            for (int k = 0; k < count; ++k) {
                const int product = uniform(1, products);
                const int qty = uniform(1, 20);
                const double discount = chance(20) ? uniform(1, 25) / 100.0 : 0.0;
                total += (long long)(prices[product] * qty * (1 - discount));
                line.integer(1, ++lineNo).integer(2, o).integer(3, product).integer(4, qty).text(5, money(prices[product]));
                if (discount > 0)
                    line.real(6, discount);
                else
                    line.null(6);
                line.run();
            }
            const int year = 2019 + (o - 1) * 6 / orders; // six years, in order
            const std::string day = date(year, uniform(1, 12), uniform(1, 28));
            order.integer(1, o).integer(2, uniform(1, customers)).text(3, day);
            const bool shipped = chance(85);
            if (shipped) {
                const std::string t = time(uniform(7, 18), uniform(0, 59), 0);
                order.text(4, t).text(5, day + " " + t);
            } else {
                order.null(4).null(5);
            }
            order.integer(6, shipped && chance(90) ? 1 : 0).text(7, money(total));
            if (chance(15))
                order.text(8, sentence(uniform(5, 30)));
            else
                order.null(8);
            order.run();
        }
    }
    exec("COMMIT");
    exec("CREATE INDEX orders_by_customer ON orders(CustNo); CREATE INDEX lines_by_order ON order_lines(OrderNo);");
}

void makeBig(long long rows)
{
    exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;");
    exec(R"(CREATE TABLE big (
        ID INTEGER PRIMARY KEY, Name VARCHAR(20) NOT NULL, Amount REAL, Qty INTEGER, Day DATE, Code VARCHAR(8),
        City VARCHAR(12)))");
    exec("BEGIN");
    Statement s("INSERT INTO big VALUES (?, ?, ?, ?, ?, ?, ?)");
    char name[24], code[12], city[16];
    for (long long i = 1; i <= rows; ++i) {
        for (int k = 0; k < 10; ++k)
            name[k] = char('a' + rng() % 26);
        name[10] = 0;
        std::snprintf(code, sizeof code, "C%06u", unsigned(rng() % 1000000));
        s.integer(1, i).text(2, name).real(3, (rng() % 100000) / 100.0).integer(4, uniform(1, 100));
        // A thousand towns, spread over the rows by a step prime to their number.
        std::snprintf(city, sizeof city, "Town %03lld", i * 7919 % 1000);
        s.text(5, date(2000 + int(rng() % 25), uniform(1, 12), uniform(1, 28))).text(6, code).text(7, city).run();
    }
    exec("COMMIT");
    exec("CREATE INDEX big_by_name ON big(Name)");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 && !(argc == 4 && std::strcmp(argv[2], "--big") == 0)) {
        std::fprintf(stderr, "usage: makesampledb OUT.db [--big ROWS]\n");
        return 2;
    }
    std::remove(argv[1]);
    if (sqlite3_open(argv[1], &db) != SQLITE_OK) {
        std::fprintf(stderr, "makesampledb: cannot create %s\n", argv[1]);
        return 1;
    }
    if (argc == 4)
        makeBig(std::atoll(argv[3]));
    else
        makeSample();
    sqlite3_close(db);
    return 0;
}
