// zo graph: the shortest path through an edge list, printed and drawn with Graphviz.
#include "ZoEdgeFile.h"
#include "ZoTool.h"

#include "base/ZoGraph.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "platform/ZoOS.h"

#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace zotool {

namespace {

const char sc_help[] =
    "usage: zo graph path EDGES FROM TO [--dot OUT.dot] [--png OUT.png]\n"
    "\n"
    "EDGES is a text file of \"from to weight\" lines, one directed connection each; blank lines\n"
    "and lines starting with # are skipped. Node names are letters, digits and underscores (not\n"
    "starting with a digit) or digits only; weights are non-negative numbers.\n"
    "Prints the shortest path from FROM to TO and its length.\n"
    "--dot  writes the graph as a Graphviz digraph with the path drawn in red.\n"
    "--png  renders that drawing with Graphviz's dot program (it must be on PATH).\n";

// ENOENT on POSIX and ERROR_FILE_NOT_FOUND on Windows: a program that is not there.
const uint32_t sc_notFound = 2;

struct Graph
{
    ZoGraph graph;
    std::map<std::string, ZoGraphNode*> nodes;

    ZoGraphNode& node(const std::string& name)
    {
        auto found = nodes.find(name);
        if (found != nodes.end())
            return *found->second;
        auto* made = new ZoGraphNode(CString::FromUtf8(name.data(), name.size()));
        graph.InsertNode(made);
        nodes[name] = made;
        return *made;
    }
};

std::string numberText(float value)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%g", static_cast<double>(value));
    return text;
}

// The library's directed dump, with the connections along the path and its nodes drawn in red. Each
// node's connections are dumped lightest first, so the first line for a pair of nodes is the
// connection the search took.
std::string highlightedDot(const ZoGraph& graph, const std::vector<std::string>& path)
{
    ZoStreamWriteASCIIString stream;
    graph.DumpDot(stream, 1);
    const std::string dump = Narrow(stream.GetText());
    std::set<std::string> pending;
    for (size_t i = 0; i + 1 < path.size(); ++i)
        pending.insert(path[i] + " -> " + path[i + 1] + " [");
    std::string text;
    size_t position = 0;
    while (position < dump.size()) {
        size_t end = dump.find('\n', position);
        end = end == std::string::npos ? dump.size() : end + 1;
        std::string line = dump.substr(position, end - position);
        position = end;
        const size_t bracket = line.find(" [");
        const size_t close = line.rfind("];");
        if (bracket != std::string::npos && close != std::string::npos &&
            pending.erase(line.substr(0, bracket + 2)) != 0)
            line.insert(close, ", color = red, penwidth = 2");
        if (line.compare(0, 1, "}") == 0) {
            for (const std::string& name : path)
                text += name + " [color = red, fontcolor = red];\r\n";
        }
        text += line;
    }
    return text;
}

void renderPNG(const std::string& dot, const CString& png)
{
    OutputFile source(png + u".dot");
    WriteWholeFile(source.GetTemporaryPath(), dot.data(), dot.size(), "writing");
    OutputFile output(png);
    const int code = ZoOS::RunProgram(u"dot", {u"-Tpng", source.GetTemporaryPath(), u"-o", output.GetTemporaryPath()});
    if (code < 0 && ZoOS::GetLastErrorCode() == sc_notFound)
        throw UserError(png, "cannot be drawn: Graphviz's `dot` program was not found on PATH (install graphviz; "
                             "bash .ci/setup does)");
    if (code < 0)
        throw UserError(png, "cannot be drawn: Graphviz's `dot` program could not be started");
    if (code != 0)
        throw UserError(png, "cannot be drawn: Graphviz's `dot` ended with exit code " + std::to_string(code));
    output.Commit();
}

int path(const SplitArguments& split)
{
    const CString& edgesPath = split.positional[1];
    const std::string from = Narrow(split.positional[2]);
    const std::string to = Narrow(split.positional[3]);
    const std::vector<unsigned char> bytes = ReadWholeFile(edgesPath, 1u << 30, "reading");
    std::vector<ZoEdge> edges;
    try {
        edges = ParseEdgeFile(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    } catch (const ZoEdgeFileError& e) {
        throw UserError(edgesPath, e.what());
    }
    Graph graph;
    for (const ZoEdge& edge : edges)
        graph.node(edge.from).AddConnection(graph.node(edge.to), edge.weight);
    for (const std::string* name : {&from, &to}) {
        if (graph.nodes.count(*name) == 0)
            throw UserError(edgesPath, "has no node named \"" + *name + "\"");
    }
    ZoGraphNode& start = *graph.nodes[from];
    ZoGraphNode& end = *graph.nodes[to];
    ZoMpGraphToShortestPath search;
    search.SetInput(graph.graph, start, end);
    if (!search.Compute())
        throw UserError(edgesPath, "has no path from " + from + " to " + to);
    std::vector<std::string> names;
    std::string line;
    for (ZoGraphPathIterator it = search.GetOutput(); it.HasMoreElements();) {
        names.push_back(Narrow(it.GetNext().GetName()));
        line += (line.empty() ? "" : " -> ") + names.back();
    }
    Print("path: " + line + "\nlength: " + numberText(end.GetWeight()) + "\n");
    if (split.Has("--dot") || split.Has("--png")) {
        const std::string dot = highlightedDot(graph.graph, names);
        if (split.Has("--dot")) {
            WriteWholeFile(split.options.at("--dot"), dot.data(), dot.size(), "writing");
            Print("wrote " + Narrow(split.options.at("--dot")) + "\n");
        }
        if (split.Has("--png")) {
            renderPNG(dot, split.options.at("--png"));
            Print("wrote " + Narrow(split.options.at("--png")) + "\n");
        }
    }
    return 0;
}

} // namespace

int RunGraph(const Arguments& arguments)
{
    if (WantsHelp(arguments)) {
        Print(sc_help);
        return 0;
    }
    const SplitArguments split = Split("graph", arguments, {"--dot", "--png"});
    const std::string action = split.positional.empty() ? std::string() : Narrow(split.positional[0]);
    if (action != "path")
        throw UsageError("graph", action.empty() ? "name an action: path" : "unknown action \"" + action + "\"");
    if (split.positional.size() != 4)
        throw UsageError("graph", "path takes EDGES FROM TO");
    return path(split);
}

} // namespace zotool
