#include "server/Options.h"

#include "server/DataDirectory.h"
#include "server/Failure.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <ostream>

namespace nimbrelle::server {

namespace {

constexpr const char *firstSteps = R"(First steps:
  nimbrelle-server init      makes the key, the certificate and the first sync code
  nimbrelle-server serve     runs until it is told to end)";

using Milliseconds = std::chrono::milliseconds;

class CommandLineParser {
public:
    explicit CommandLineParser(Options &options) : m_options(options)
    {
        m_app.name("nimbrelle-server");
        m_app.set_help_flag("-h,--help", "Say what can be given, and end");
        m_app.set_version_flag("--version", "nimbrelle-server " NIMBRELLE_VERSION);
        m_app.require_subcommand(1);
        m_app.fallthrough();
        m_app.add_option("--data", m_options.data,
            "The data folder (else $NIMBRELLE_SERVER_DATA, else ~/.local/share/nimbrelle-server)");
        m_app
            .add_option("--store", m_options.store,
                "Where the notebooks are, such as postgresql://USER@HOST/DATABASE (else a file in the data "
                "folder)")
            ->envname("NIMBRELLE_SERVER_STORE");
        addInit();
        addServe();
        addTokens();
        addCode();
        addHistory();
        addQuota();
        addPrune();
        addMove();
        m_app.footer(firstSteps); // last, for subcommands inherit what is set before them
    }

    CLI::App &app() { return m_app; }

private:
    CLI::App *add(CLI::App &parent, Command command, const char *name, const char *description)
    {
        CLI::App *added = parent.add_subcommand(name, description);
        added->callback([this, command] { m_options.command = command; });
        return added;
    }
    void addUrl(CLI::App *to, const char *description)
    {
        to->add_option("--url", m_options.url, description)->type_name("https://HOST:PORT");
    }
    void addListenAddress(CLI::App *to)
    {
        to->add_option("--port", m_options.port, "The port to listen at")->type_name("N");
        to->add_option("--bind", m_options.bind, "The address to listen at; all of them when empty")
            ->type_name("ADDRESS");
    }
    void addQr(CLI::App *to)
    {
        to->add_flag_callback(
            "--qr", [this] { m_options.qr = Options::Qr::always; },
            "Draw the QR code even outside a terminal");
        to->add_flag_callback(
            "--no-qr", [this] { m_options.qr = Options::Qr::never; }, "Draw no QR code");
    }
    void addName(CLI::App *to, const char *description)
    {
        to->add_option("NAME", m_options.name, description);
    }
    static CLI::Validator atLeast(std::uint64_t least)
    {
        const auto check = [least](const std::string &text) {
            std::uint64_t value = 0;
            const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
            return error == std::errc() && value >= least
                ? ""
                : "at least " + std::to_string(least) + " are needed";
        };
        return {check, "", "least"};
    }

    void addInit();
    void addServe();
    void addLimits(CLI::App *serve);
    void addTokens();
    void addCode();
    void addHistory();
    void addQuota();
    void addPrune();
    void addMove();

    Options &m_options;
    CLI::App m_app{"Keeps Nimbrelle notebooks equal on all of a person's devices."};
};

void CommandLineParser::addInit()
{
    CLI::App *init = add(m_app, Command::init, "init", "Make the data folder and the first sync code");
    init->add_option("--name", m_options.name, "The first notebook's name (else \"notebook\")");
    addUrl(init, "Where devices reach this server (else guessed)");
    addListenAddress(init);
    addQr(init);
}

void CommandLineParser::addServe()
{
    CLI::App *serve = add(m_app, Command::serve, "serve", "Run the server until SIGTERM or Ctrl+C");
    addListenAddress(serve);
    serve->add_flag_callback(
        "--no-access-log", [this] { m_options.accessLog = false; }, "Write no line for each request");
    serve
        ->add_option("--metrics-port", m_options.metricsPort, "Serve /healthz and /metrics at this port, too")
        ->type_name("N");
    serve->add_option("--metrics-bind", m_options.metricsBind, "At this address (127.0.0.1)")
        ->type_name("ADDRESS");
    addLimits(serve);
}

void CommandLineParser::addLimits(CLI::App *serve)
{
    ServerLimits &limits = m_options.limits;
    const auto bytes = [&](const char *name, std::uint64_t &value, const char *description) {
        serve->add_option(name, value, description)
            ->check(atLeast(1024))
            ->transform(CLI::AsSizeValue(false).description("")) // runs before the check
            ->type_name("BYTES");
    };
    const auto count = [&](const char *name, unsigned &value, const char *description) {
        serve->add_option(name, value, description)
            ->check(CLI::Range(1, 100'000).description(""))
            ->type_name("N");
    };
    const auto seconds = [&](const char *name, Milliseconds &value, const char *description) {
        serve
            ->add_option_function<unsigned>(
                name, [&value](unsigned given) { value = std::chrono::seconds(given); }, description)
            ->check(CLI::Range(1, 86'400).description(""))
            ->type_name("SECONDS");
    };
    bytes("--max-body", limits.maxBody, "The longest document, such as 64MiB (the default)");
    bytes("--max-held", limits.maxHeld, "All documents in memory together (256MiB)");
    count("--max-connections", limits.maxConnections, "Connections in all (512)");
    count("--max-per-address", limits.maxPerAddress,
        "Connections from one IPv4 address or IPv6 /64 network (32)");
    seconds("--head-time", limits.headTimeout,
        "For a request's head, from connecting or the last answer; less while many are connected (15)");
    seconds("--body-time", limits.bodyTimeout, "For its body and the answer (120)");
    count("--threads", limits.threads, "Worker threads (4)");
    count("--store-connections", m_options.storeConnections, "Connections to a database in --store (8)");
}

void CommandLineParser::addTokens()
{
    CLI::App *token = m_app.add_subcommand("token", "Manage notebooks; each has one token and one document");
    token->require_subcommand(1);
    CLI::App *added = add(*token, Command::tokenAdd, "add",
        "Make a notebook with a token, or a new token for a notebook whose token was revoked");
    added->add_option("NAME", m_options.name, "The notebook's name")->required();
    addQr(added);
    add(*token, Command::tokenList, "list", "List the notebooks");
    CLI::App *revoked =
        add(*token, Command::tokenRevoke, "revoke", "Shut all devices out of a notebook; its words stay");
    revoked->add_option("NAME", m_options.name, "The notebook's name")->required();
}

void CommandLineParser::addCode()
{
    CLI::App *code = add(m_app, Command::code, "code", "Print a sync code again");
    addName(code, "The notebook; may be left out when there is only one");
    addUrl(code, "Where devices reach this server, from now on");
    addQr(code);
}

void CommandLineParser::addHistory()
{
    CLI::App *history = add(m_app, Command::history, "history", "List the kept versions of a notebook");
    addName(history, "The notebook; may be left out when there is only one");
    CLI::App *restore =
        add(m_app, Command::restore, "restore", "Bring an earlier version back as a new, higher one");
    restore->add_option("VERSION", m_options.version, "As history lists it")->required();
    addName(restore, "The notebook; may be left out when there is only one");
}

void CommandLineParser::addQuota()
{
    CLI::App *quota = add(m_app, Command::quota, "quota", "Say or set what a notebook may keep");
    addName(quota, "The notebook; left out: all that have no quota of their own");
    quota->add_option("--bytes", m_options.quotaBytes, "Of all kept versions, such as 200MiB; 0 for no limit")
        ->check(CLI::NonNegativeNumber.description(""))
        ->transform(CLI::AsSizeValue(false).description("")) // runs before the check
        ->type_name("BYTES");
    quota->add_option("--versions", m_options.quotaVersions, "Kept versions; 0 for no limit")
        ->check(CLI::NonNegativeNumber.description(""))
        ->type_name("N");
    quota->add_flag("--default", m_options.dropOwnQuota,
        "What holds for all holds for this notebook again, but for what is given besides");
}

void CommandLineParser::addPrune()
{
    CLI::App *prune = add(m_app, Command::prune, "prune", "Drop earlier versions for good");
    addName(prune, "The notebook; may be left out when there is only one");
    prune->add_flag("--all", m_options.allNotebooks, "Those of all notebooks");
    prune
        ->add_option(
            "--keep", m_options.keptNewest, "So many of the newest stay, the current among them (20)")
        ->check(CLI::Range(1, 100'000).description(""))
        ->type_name("N");
    prune->add_option("--older-than", m_options.olderThanDays, "Only those older than this (0)")
        ->check(CLI::Range(0, 36'500).description(""))
        ->type_name("DAYS");
    prune->add_flag("--before-loss", m_options.alsoBeforeLoss,
        "Also those from before a third of the words went, which else are kept for good");
    prune->add_flag("--dry-run", m_options.dryRun, "Only say what would go");
}

void CommandLineParser::addMove()
{
    CLI::App *move = add(m_app, Command::move, "move",
        "Copy all notebooks into another, empty store and check them; the first store then takes no more "
        "changes");
    move->add_flag("--undo", m_options.undoMove,
        "Let FROM take changes again, after a move that was interrupted or is not wanted any more");
    move->add_option("FROM", m_options.moveFrom, "postgresql://..., or a data folder or its notebooks.db")
        ->required();
    move->add_option("TO", m_options.moveTo, "The same; not with --undo");
}

std::string onOneLine(std::string text)
{
    std::ranges::replace(text, '\n', ' ');
    return text;
}

} // namespace

std::variant<Options, int> parseCommandLine(
    int count, const char *const *arguments, std::ostream &out, std::ostream &errors)
{
    Options options;
    CommandLineParser parser(options);
    try {
        parser.app().parse(count, arguments);
        if (options.data.empty())
            options.data = DataDirectory::defaultPath();
        return options;
    } catch (const CLI::Success &success) {
        return parser.app().exit(success, out, errors);
    } catch (const CLI::RequiredError &error) {
        const auto unknown = parser.app().remaining(true);
        errors << "nimbrelle-server: "
               << (unknown.empty() ? onOneLine(error.what())
                                   : "there is no command \"" + unknown.front() + '"')
               << ". Try --help.\n";
    } catch (const CLI::ParseError &error) {
        errors << "nimbrelle-server: " << onOneLine(error.what()) << ". Try --help.\n";
    } catch (const UsageFailure &failure) {
        errors << "nimbrelle-server: " << failure.what() << '\n';
    }
    return 2;
}

} // namespace nimbrelle::server
