// The typical path through Zo, as the README's "Typical path" section walks it (the three steps
// below are its code, word for word): write a two-dimensional array into a compressed file stream,
// read it back, and run a shortest path over a graph built from it.
#include "base/ZoArray2D.h"
#include "base/ZoClassSerialization.h"
#include "base/ZoException.h"
#include "base/ZoGraph.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"

#include <cstdio>

int main()
{
    try {
        // Step 2: write a compressed file stream.
        ZoArray2D<float> heights(4, 3);
        heights[1][2] = 2.5f; // row 1, column 2
        ZoStreamWriteBinaryFile out(ZoClassSerialization::eTemporary, u"typical_path.zo",
                                    ZoStreamWriteBinaryFile::eCompressionZIP);
        heights.Serialize(out);
        out.Close(); // throws ZoExceptionStream if the file cannot be finished

        // Step 3: read it back.
        ZoArray2D<float> loaded;
        ZoStreamReadBinaryFile in(ZoClassSerialization::eTemporary, u"typical_path.zo");
        loaded.Serialize(in);
        in.Close();

        // Step 4: run a shortest path.
        ZoGraph graph;
        ZoGraphNode* a = new ZoGraphNode(u"a");
        ZoGraphNode* b = new ZoGraphNode(u"b");
        graph.InsertNode(a);
        graph.InsertNode(b);
        a->AddConnection(*b, loaded[1][2]);
        ZoMpGraphToShortestPath search;
        search.SetInput(graph, *a, *b);
        if (search.Compute())
            for (ZoGraphPathIterator step = search.GetOutput(); step.HasMoreElements();)
                std::printf("%s\n", step.GetNext().GetName().ToUtf8().c_str());

        std::printf("distance %.1f\n", b->GetWeight());
        ZoClassSerialization::DeleteFileW(ZoClassSerialization::GetDirectory(ZoClassSerialization::eTemporary) +
                                          u"typical_path.zo");
        return 0;
    } catch (const ZoException& e) {
        std::printf("%s", e.GetTraceString().ToUtf8().c_str());
        return 1;
    }
}
