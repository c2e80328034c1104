#include "server/Commands.h"

#include "server/Clock.h"
#include "server/Identity.h"
#include "server/Installation.h"
#include "server/MoveStore.h"
#include "server/ServerUrl.h"
#include "server/StoreFactory.h"
#include "server/SyncCode.h"
#include "server/VersionedWrite.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iomanip>
#include <ostream>

namespace nimbrelle::server {

namespace {

constexpr std::size_t secretBytes = 32;
constexpr std::size_t maxNameBytes = 64;

void requireUsableName(const std::string &name)
{
    const auto bad = [](char character) {
        const auto value = static_cast<unsigned char>(character);
        return value <= 0x20 || value == 0x7f;
    };
    if (name.empty() || name.size() > maxNameBytes || name.front() == '-' || std::ranges::any_of(name, bad))
        throw UsageFailure("a notebook's name has 1 to 64 bytes, no blanks, and no - in front");
}

ServerUrl parsedUrl(const std::string &text)
{
    if (const auto url = ServerUrl::parse(text))
        return *url;
    throw UsageFailure(
        "--url takes https://HOST or https://HOST:PORT and nothing behind it, not \"" + text + "\"");
}

std::string tokenSecret(const DataDirectory &directory)
{
    const auto file = directory.tokenSecret();
    std::string secret = std::filesystem::exists(file) ? readFile(file) : "";
    if (secret.size() != secretBytes)
        throw Failure(file.string()
            + " is missing or damaged. Put it back from a backup; or remove what is left of it and run init "
              "again: "
              "devices stay connected, but codes of before can't be printed any more.");
    return secret;
}

// 43 characters, 256 bits. Neither the database nor the secret alone gives it.
std::string tokenFor(std::string_view secret, std::string_view salt)
{
    return base64Url(bytesOf(hmacSha256(secret, salt)));
}

std::string tokenOf(const Notebook &notebook, const DataDirectory &directory)
{
    const std::string again = "nimbrelle-server token revoke " + notebook.name
        + " and then: nimbrelle-server token add " + notebook.name;
    if (!notebook.tokenHash)
        throw Failure("the token of \"" + notebook.name
            + "\" was revoked. Make another with: nimbrelle-server token add " + notebook.name);
    std::string token = tokenFor(tokenSecret(directory), notebook.tokenSalt);
    if (!equalInConstantTime(sha256(token), *notebook.tokenHash))
        throw Failure(
            "this code was made with another token.secret and can't be printed. For a new one: " + again);
    return token;
}

void showCode(const Installation &installation, const Notebook &notebook, const Options &options,
    std::ostream &out, Commands::Output output)
{
    const SyncCode code{.server = installation.store->setting(Setting::url).value_or(""),
        .token = tokenOf(notebook, installation.directory),
        .pin = loadIdentity(installation.directory).pin()};
    out << "The sync code of \"" << notebook.name
        << "\". It holds the password: give it to your own devices only.\n\n"
        << code.text() << "\n\n";
    const bool inTerminal = options.qr == Options::Qr::inTerminal && output == Commands::Output::terminal;
    if (inTerminal || options.qr == Options::Qr::always)
        out << terminalQr(code.text()) << '\n';
}

struct MadeFiles {
    bool identity = false;
    bool secret = false;
};

MadeFiles makeFiles(const DataDirectory &directory, const ServerUrl &url)
{
    // What is already there stays: a lost database must not cost the pin that devices remember.
    const MadeFiles made{.identity = !std::filesystem::exists(directory.key()),
        .secret = !std::filesystem::exists(directory.tokenSecret())};
    if (made.identity) {
        const Identity identity = makeIdentity(url.host);
        writePrivateFile(directory.certificate(), identity.certificate);
        writePrivateFile(directory.key(), identity.key);
    }
    loadIdentity(directory);
    if (made.secret)
        writePrivateFile(directory.tokenSecret(), randomBytes(secretBytes));
    return made;
}

// What init says where notebooks are there already: a lost file was made again, or all was in its place.
void reportMade(const DataDirectory &directory, const MadeFiles &made, std::ostream &out)
{
    if (!made.identity && !made.secret)
        throw Failure(directory.path().string()
            + " is set up already. Print a code with: nimbrelle-server code; change the address in it with: "
              "nimbrelle-server code --url https://HOST:PORT");
    if (made.identity)
        out << "server.key and server.crt were made anew. Connect every device again: restart the server and "
               "use what this prints: nimbrelle-server code\n";
    if (made.secret)
        out << "token.secret was made anew. Connected devices don't notice, but codes of before can't be "
               "printed any more; for a new code: nimbrelle-server token revoke NAME and then: "
               "nimbrelle-server token add NAME\n";
    out << "The notebooks are as they were.\n";
}

Notebook addNotebook(const Installation &installation, const std::string &name)
{
    const std::string salt = randomBytes(secretBytes);
    const Digest hash = sha256(tokenFor(tokenSecret(installation.directory), salt));
    if (const auto present = installation.store->notebookNamed(name)) {
        if (present->tokenHash)
            throw Failure(
                "\"" + name + "\" is there already. Print its code with: nimbrelle-server code " + name);
        installation.store->setToken(present->id, salt, hash);
    } else {
        installation.store->addNotebook(name, salt, hash, now());
    }
    return *installation.store->notebookNamed(name);
}

std::string localTimeText(std::chrono::sys_seconds time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return text.data();
}

void printRecord(const VersionRecord &record, bool isNewest, std::ostream &out)
{
    out << std::setw(9) << record.version << "  " << localTimeText(record.writtenAt) << std::setw(9)
        << record.words << " words" << std::setw(12) << record.bytes << " bytes"
        << (isNewest ? "  current" : "") << (record.beforeLoss ? "  before a third of the words went" : "")
        << '\n';
}

// Whatever keeps the other store from being opened: what an interrupted move left of this one goes on.
std::unique_ptr<Store> openTarget(Store &source, const std::string &text)
{
    try {
        const StoreLocation location(text);
        location.requirePrivate();
        createStore(location);
        return openStore(location);
    } catch (const Failure &) {
        abandonMove(source);
        throw;
    }
}

void undoMove(Store &source, const StoreLocation &location, std::ostream &out)
{
    const StoreState before = source.state();
    source.setState(StoreState::open);
    out << location.shown() << " takes changes" << (before == StoreState::open ? ", as before" : " again")
        << ".\n";
    if (before == StoreState::moved)
        out << "What was written into the store that it was moved to is not in it: let no server use that "
               "one "
               "any more.\n";
}

} // namespace

StoreLocation storeLocation(const Options &options)
{
    return options.store.empty() ? StoreLocation(DataDirectory(options.data)) : StoreLocation(options.store);
}

void Commands::init(const Options &options, std::ostream &out, Output output)
{
    const DataDirectory directory(options.data);
    const std::string name = options.name.empty() ? "notebook" : options.name;
    requireUsableName(name);
    const std::uint16_t port = options.port.value_or(defaultPort);
    const ServerUrl url =
        options.url ? parsedUrl(*options.url) : ServerUrl{.host = guessedHost(), .port = port};

    directory.create();
    const MadeFiles made = makeFiles(directory, url);
    createStore(storeLocation(options));
    const Installation installation(options);
    if (!installation.store->notebooks().empty())
        return reportMade(directory, made, out);
    installation.store->setSetting(Setting::url, url.text());
    installation.store->setSetting(Setting::port, std::to_string(port));
    installation.store->setSetting(Setting::bind, options.bind.value_or(""));

    out << "All that this server keeps is in " << directory.path().string()
        << (options.store.empty() ? ""
                                  : ", but for the notebooks, which are in " + storeLocation(options).shown())
        << ".\n"
        << "Devices will look for it at " << url.text()
        << (options.url ? ".\n"
                        : ", which is a guess. If they reach it elsewhere: nimbrelle-server code --url "
                          "https://HOST:PORT\n");
    showCode(installation, addNotebook(installation, name), options, out, output);
    out << "Start the server with: nimbrelle-server serve\n";
}

void Commands::addToken(const Options &options, std::ostream &out, Output output)
{
    requireUsableName(options.name);
    const Installation installation(options);
    const Notebook notebook = addNotebook(installation, options.name);
    if (notebook.version > 0)
        out << "\"" << notebook.name << "\" has a new token; its words are as they were.\n";
    showCode(installation, notebook, options, out, output);
}

void Commands::listTokens(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    for (const Notebook &notebook : installation.store->notebooks()) {
        out << notebook.name << (notebook.tokenHash ? "" : "  (revoked)") << "\n    since "
            << localTimeText(notebook.createdAt);
        const auto history = installation.store->history(notebook.id);
        if (history.empty())
            out << ", nothing stored yet\n";
        else
            out << ", version " << notebook.version << " of " << localTimeText(history.back().writtenAt)
                << " with " << history.back().words << " words, " << history.size() << " versions kept with "
                << totalBytes(history) << " bytes\n";
    }
}

void Commands::revokeToken(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    const Notebook notebook = selectedNotebook(*installation.store, options.name);
    installation.store->setToken(notebook.id, notebook.tokenSalt, std::nullopt);
    out << "No device can reach \"" << notebook.name << "\" any more; its words are kept. A new token: "
        << "nimbrelle-server token add " << notebook.name << '\n';
}

void Commands::printCode(const Options &options, std::ostream &out, Output output)
{
    const Installation installation(options);
    if (options.url)
        installation.store->setSetting(Setting::url, parsedUrl(*options.url).text());
    showCode(installation, selectedNotebook(*installation.store, options.name), options, out, output);
}

void Commands::printHistory(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    const Notebook notebook = selectedNotebook(*installation.store, options.name);
    const auto records = installation.store->history(notebook.id);
    if (records.empty())
        out << "Nothing is stored yet in \"" << notebook.name << "\".\n";
    for (const VersionRecord &record : records)
        printRecord(record, record.version == notebook.version, out);
}

void Commands::restore(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    const Notebook notebook = selectedNotebook(*installation.store, options.name);
    const auto raised = restoreVersion(*installation.store, notebook.id, options.version, now());
    if (!raised)
        throw Failure("version " + std::to_string(options.version) + " of \"" + notebook.name
            + "\" is not kept. See: nimbrelle-server history " + notebook.name);
    out << "Version " << options.version << " of \"" << notebook.name << "\" is back, as version " << *raised
        << ". Each device takes it up at its next sync and adds what it has itself.\n";
}

void Commands::move(const Options &options, std::ostream &out)
{
    if (options.undoMove != options.moveTo.empty())
        throw UsageFailure("move takes the two stores FROM and TO, or --undo and the one that was moved");
    const StoreLocation from(options.moveFrom);
    from.requirePrivate();
    const auto source = openStore(from);
    if (options.undoMove)
        return undoMove(*source, from, out);
    const auto moved = moveStore(*source, *openTarget(*source, options.moveTo));
    out << "All of " << from.shown() << " is in " << StoreLocation(options.moveTo).shown()
        << " now and was compared: " << moved.notebooks << " notebooks, " << moved.versions << " versions, "
        << moved.bytes << " bytes.\n"
        << "The first one takes no more changes. Start the server again with the new one in --store, and "
           "keep the "
           "data folder: key and token.secret stay in use.\n";
}

} // namespace nimbrelle::server
